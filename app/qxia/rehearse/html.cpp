#include "app/qxia/rehearse/html.h"

#include <cstdio>
#include <map>

#include "app/qxia/html_page.h"
#include "app/qxia/logs/rows.h"
#include "app/qxia/rehearse/component_rows.h"
#include "app/qxia/rehearse/html_style.h"
#include "app/qxia/rehearse/report.h"
#include "platform/simulated/text.h"

namespace qxia {
namespace {

/// Every cell counts.
std::string SharesOf(const std::vector<RehearsedRun>& runs) {
  std::map<Outcome, std::size_t> counts;
  for (const RehearsedRun& run : runs)
    for (const ComponentResult& component : run.components) ++counts[component.outcome];
  std::vector<Share> shares;
  shares.reserve(counts.size());
  for (const auto& [outcome, count] : counts) shares.push_back({NameOf(outcome), count});
  return "<div class=\"sheet\">" + ShareBar(shares) + "</div>\n";
}

std::string Cell(const ComponentResult* component) {
  if (component == nullptr) return "<td><small>has no record of it</small></td>";
  return "<td title=\"" + EscapedHtml(component->command) + "\">" + Badge(NameOf(component->outcome)) + "<small>" +
         EscapedHtml(component->reason) + "</small></td>";
}

std::string Anchor(const RehearsedRun& run) {
  std::string name = run.system;
  for (char& c : name)
    if (c == ' ') c = '-';
  return name;
}

std::string MatrixHead(const std::vector<RehearsedRun>& runs) {
  std::string text = "<thead><tr><th>component</th>";
  for (const RehearsedRun& run : runs) {
    const bool doubtful = !run.finished() || !run.looseEnds.empty();
    const char* style = doubtful ? "warning" : run.product.succeeded ? "succeeded" : "failed";
    const std::string told = run.finished() ? "exit code " + std::to_string(run.played.exitCode) : "not finished";
    text += "<th class=\"" + std::string(style) + "\"><a href=\"#" + Anchor(run) + "\">" + EscapedHtml(run.system) +
            "</a><small>" + told + (run.looseEnds.empty() ? "" : ", loose ends") + "</small></th>";
  }
  return text + "</tr></thead>\n";
}

std::string MatrixOf(const std::vector<RehearsedRun>& runs) {
  std::string text = "<div class=\"sheet\"><table class=\"matrix\">" + MatrixHead(runs) + "<tbody>\n";
  for (const ComponentRow& row : ComponentRows(runs)) {
    const ComponentResult& first = *row.first();
    text += "<tr><th>" + EscapedHtml(first.name) + "<small>" + EscapedHtml(first.kind) + ", " +
            std::to_string(first.sequence) + "</small></th>";
    for (const ComponentResult* cell : row.cells) text += Cell(cell);
    text += "</tr>\n";
  }
  return text + "</tbody></table></div>\n";
}

/// Where moments of a run lie on its line, in hundredths of it.
class Line {
 public:
  explicit Line(const RehearsedRun& run)
      : begin_(run.played.begin), length_(static_cast<double>(std::max<std::int64_t>(1, run.played.end - begin_))) {}

  std::string piece(std::int64_t from, std::int64_t to, const std::string& style, const std::string& title) const {
    char place[96];
    std::snprintf(place, sizeof place, "left:%.2f%%;width:%.2f%%", at(from), at(to) - at(from));
    return "<i class=\"" + style + "\" style=\"" + place + "\" title=\"" + EscapedHtml(title) + "\"></i>";
  }

 private:
  double at(std::int64_t moment) const { return 100.0 * static_cast<double>(moment - begin_) / length_; }

  std::int64_t begin_;
  double length_;
};

bool Begins(const std::string& text, const char* beginning) {
  return text.rfind(beginning, 0) == 0;
}

/// Programs as bars between their start and their end, restarts as marks.
std::string CourseOf(const RehearsedRun& run) {
  const Line line(run);
  std::map<std::string, std::int64_t> running;
  std::int64_t restarted = -1;
  std::string text = "<div class=\"course\">";
  for (const Event& event : run.events) {
    const std::string time = Duration(event.moment - run.played.begin) + " ";
    if (Begins(event.text, "run "))
      running[event.text.substr(Begins(event.text, "run hidden ") ? 11 : 4)] = event.moment;
    if (Begins(event.text, "ended ")) {
      const std::size_t arrow = event.text.rfind(" -> ");
      const std::string command = event.text.substr(6, arrow - 6);
      const bool fine = event.text.substr(arrow) == " -> 0";
      text += line.piece(running.count(command) != 0 ? running[command] : event.moment, event.moment,
                         fine ? "installed" : "failed", time + command + event.text.substr(arrow));
    }
    if (Begins(event.text, "the machine restarts")) restarted = event.moment;
    if (restarted >= 0 && Begins(event.text, "the user ")) {
      text += line.piece(restarted, event.moment, "away", time + "the machine restarts, " + event.text);
      text += line.piece(restarted, restarted, "restart", time + "the machine restarts");
      restarted = -1;
    }
  }
  return text + "</div><div class=\"scale\"><span>0:00:00</span><span>" + Duration(run.played.end - run.played.begin) +
         "</span></div>\n";
}

std::string List(const char* title, const std::vector<std::string>& lines) {
  if (lines.empty()) return "";
  std::string text = std::string("<p><b>") + title + "</b></p><ul class=\"failed\">";
  for (const std::string& line : lines) text += "<li>" + EscapedHtml(line) + "</li>";
  return text + "</ul>\n";
}

std::string EventsOf(const RehearsedRun& run) {
  std::string text = "<details><summary>What happened on the machine (" + std::to_string(run.events.size()) +
                     " entries)</summary><table>";
  for (const Event& event : run.events) {
    const bool marked = Begins(event.text, "the machine restarts") || Begins(event.text, "the user ") ||
                        Begins(event.text, "the logon ");
    text += std::string("<tr") + (marked ? " class=\"restart\"" : "") + "><td class=\"time\">" +
            Duration(event.moment - run.played.begin) + "</td><td>" + EscapedHtml(event.text) + "</td></tr>\n";
  }
  return text + "</table></details>\n";
}

std::string LogOf(const RehearsedRun& run) {
  std::string rows;
  std::size_t count = 0;
  const auto add = [&](const logs::Row& row) {
    const std::string kind = ShownKind(row.kind);
    rows += "<tr class=\"" + CssClass(simulated::Lower(kind)) + "\"><td class=\"time\">" +
            EscapedHtml(std::string(row.stamp)) + "</td><td>" + EscapedHtml(kind) + "</td><td>" +
            EscapedHtml(logs::PlainText(row.text)) + "</td></tr>\n";
    ++count;
  };
  if (run.rows) run.rows->forEachRow(add);
  return "<details><summary>The log (" + std::to_string(count) + " rows)</summary><table>" + rows +
         "</table></details>\n";
}

std::string RunOf(const RehearsedRun& run) {
  return "<h2 id=\"" + Anchor(run) + "\">" + EscapedHtml(run.system) + "</h2>\n<div class=\"sheet\"><p>" +
         EscapedHtml(Headline(run)) + "</p>\n" + CourseOf(run) + List("Why it failed", run.product.reasons) +
         List("Loose ends", run.looseEnds) + EventsOf(run) + LogOf(run) + "</div>\n";
}

}  // namespace

std::string HtmlPage(const std::vector<RehearsedRun>& runs) {
  const ProductResult& product = runs[0].product;
  const std::string facts = std::string(runs[0].uninstall ? "Its removal" : "Its installation") + " rehearsed on " +
                            std::to_string(runs.size()) + (runs.size() == 1 ? " system" : " systems") +
                            ". Each cell has the outcome and the one fact that decided it.";
  std::string body = SharesOf(runs) + MatrixOf(runs);
  for (const RehearsedRun& run : runs) body += RunOf(run);
  return HtmlPage(product.name + " " + product.version + ", rehearsed", facts, body, RehearsalStyle);
}

}  // namespace qxia
