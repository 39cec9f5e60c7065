#include "app/qxia/logs/log_page.h"

#include <algorithm>
#include <set>

#include "app/qxia/html_page.h"

namespace qxia::logs {
namespace {

std::string Anchor(std::size_t log, int row) {
  return "r" + std::to_string(log) + "-" + std::to_string(row);
}

std::string Cell(const std::string& html, const char* cssClass = nullptr) {
  return std::string("<td") + (cssClass == nullptr ? "" : std::string(" class=\"") + cssClass + "\"") + ">" + html +
         "</td>";
}

std::string PackageLine(const PackageLog& log) {
  if (log.path.empty()) return "";
  const std::string where = EscapedHtml(log.path) + (log.line == 0 ? "" : ":" + std::to_string(log.line));
  const std::string text = log.line == 0 ? "no line with \"Return value 3\"" : log.text;
  return "<pre>" + where + "\n" + EscapedHtml(text) + "</pre>";
}

std::string ComponentRow(std::size_t log, const LoggedComponent& component) {
  const std::string row = std::to_string(component.row);
  const std::string link = component.row == 0 ? "" : "<a href=\"#" + Anchor(log, component.row) + "\">" + row + "</a>";
  const std::string code = component.exitCode ? std::to_string(*component.exitCode) : "";
  return "<tr>" + Cell(std::to_string(component.sequence), "number") + Cell(EscapedHtml(component.name)) +
         Cell(EscapedHtml(component.kind)) + Cell(Badge(NameOf(component.outcome))) +
         Cell(EscapedHtml(component.reason) + PackageLine(component.packageLog)) + Cell(code, "number") +
         Cell(link, "number") + "</tr>\n";
}

std::vector<Share> SharesOf(const LoggedRun& run) {
  std::vector<Share> shares;
  for (int i = 0; i <= static_cast<int>(Outcome::AlreadyGone); ++i) {
    const auto outcome = static_cast<Outcome>(i);
    const auto count = std::count_if(run.components.begin(), run.components.end(),
                                     [outcome](const LoggedComponent& c) { return c.outcome == outcome; });
    shares.push_back({NameOf(outcome), static_cast<std::size_t>(count)});
  }
  return shares;
}

std::string RunSection(std::size_t log, const LogFile& file, const LoggedRun& run) {
  std::string html = "<h2>" + EscapedHtml(Headline(run)) + "</h2>\n<div class=\"sheet\"><p class=\"facts\">" +
                     Badge(OutcomeOf(run)) + " " + EscapedHtml(CourseOf(run)) + "<br><code>" + EscapedHtml(file.path) +
                     "</code></p>\n";
  for (const std::string& reason : run.product.reasons) html += "<div>" + EscapedHtml(reason) + "</div>\n";
  html += "</div>\n";
  if (run.components.empty()) return html;
  html += "<div class=\"sheet\">" + ShareBar(SharesOf(run)) +
          "<table><tr><th class=\"number\">No.</th><th>Component</th><th>Kind</th>"
          "<th>Outcome</th><th>Reason</th><th class=\"number\">Exit code</th><th class=\"number\">Row</th></tr>\n";
  for (const LoggedComponent& component : run.components) html += ComponentRow(log, component);
  return html + "</table></div>\n";
}

std::string LogRow(std::size_t log, const ShownRow& row) {
  const std::string kind = NameOf(row.kind);
  return "<tr data-row id=\"" + Anchor(log, row.number) + "\" class=\"" + kind + "\" data-kind=\"" + kind +
         "\" data-component=\"" + EscapedHtml(row.component) + "\">" + Cell(std::to_string(row.number), "number") +
         Cell(EscapedHtml(ShownTime(row.time)), "time") + Cell(EscapedHtml(row.component)) +
         Cell(EscapedHtml(PlainText(row.text))) + "</tr>\n";
}

std::string RowsSection(const std::vector<LogFile>& files) {
  std::set<std::string> components;
  std::string rows;
  for (std::size_t log = 0; log < files.size(); ++log) {
    for (const ShownRow& row : files[log].log.rows) {
      if (!row.component.empty()) components.insert(ToUtf8(row.component));
      rows += LogRow(log, row);
    }
  }
  return "<h2>Rows</h2>\n<div class=\"filters\">" + FilterChoice("kind", "Kind", {"action", "warning", "error"}) +
         FilterChoice("component", "Component", {components.begin(), components.end()}) + FilterText() +
         "<span class=\"soft\" data-shown></span></div>\n<div class=\"sheet\"><table><tr><th class=\"number\">Row</th>"
         "<th>Time</th><th>Component</th><th>Text</th></tr>\n" +
         rows + "</table></div>\n";
}

}  // namespace

std::string Headline(const LoggedRun& run) {
  const std::string name = run.product.name.empty() ? "no product known" : ToUtf8(run.product.name);
  const std::string version = run.product.version.empty() ? "" : " " + ToUtf8(run.product.version);
  return name + version + (run.direction == Direction::Uninstall ? ", uninstall: " : ": ") + OutcomeOf(run);
}

std::string CourseOf(const LoggedRun& run) {
  constexpr const char* lastRow[] = {"ended ", "waits for a restart since ", "broken off after "};
  return "begun " + ShownTime(run.firstTime) + ", " + lastRow[static_cast<std::size_t>(run.end)] +
         ShownTime(run.lastTime) + ", " +
         (run.restarts == 0   ? "no restart"
          : run.restarts == 1 ? "1 restart"
                              : std::to_string(run.restarts) + " restarts");
}

std::string LogPage(const std::vector<LogFile>& files) {
  std::string body;
  std::size_t runs = 0;
  for (std::size_t log = 0; log < files.size(); ++log) {
    for (const LoggedRun& run : files[log].log.runs) body += RunSection(log, files[log], run);
    runs += files[log].log.runs.size();
  }
  const std::string facts = std::to_string(runs) + (runs == 1 ? " run" : " runs") + " of the installation assistant";
  return HtmlPage("Installation logs", facts, body + RowsSection(files));
}

}  // namespace qxia::logs
