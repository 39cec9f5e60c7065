#include <algorithm>
#include <set>

#include "app/qxia/html_page.h"
#include "app/qxia/logs/fleet_report.h"

namespace qxia::logs {
namespace {

std::string Cell(const std::string& html, const char* cssClass = nullptr) {
  return std::string("<td") + (cssClass == nullptr ? "" : std::string(" class=\"") + cssClass + "\"") + ">" + html +
         "</td>";
}

std::vector<std::string> ProductsOf(const std::vector<FleetLine>& lines) {
  std::vector<std::string> products;
  for (const FleetLine& line : lines)
    if (products.empty() || products.back() != line.product) products.push_back(line.product);
  return products;
}

std::string SharesSection(const Fleet& fleet) {
  const std::vector<FleetLine> lines = LinesOf(fleet);
  std::string html;
  for (const std::string& product : ProductsOf(lines)) {
    std::vector<Share> shares;
    std::size_t count = 0;
    for (const FleetLine& line : lines) {
      if (line.product != product) continue;
      shares.push_back({line.outcome, line.machines.size()});
      count += line.machines.size();
    }
    const std::string name = product.empty() ? "Sent nothing readable" : EscapedHtml(product);
    html += "<p><b>" + name + "</b> <span class=\"soft\">" + std::to_string(count) +
            (count == 1 ? " machine" : " machines") + "</span></p>" + ShareBar(shares);
  }
  return "<div class=\"sheet\">" + html + "</div>\n";
}

std::string MachineList(const std::vector<std::string>& machines) {
  constexpr std::size_t shownAtOnce = 6;
  std::string first;
  std::string all;
  for (std::size_t i = 0; i < machines.size(); ++i) {
    const std::string name = (i == 0 ? "" : ", ") + EscapedHtml(machines[i]);
    if (i < shownAtOnce) first += name;
    all += name;
  }
  if (machines.size() <= shownAtOnce) return first;
  return "<details><summary>" + first + ", ...</summary>" + all + "</details>";
}

std::string FailureRow(const FleetFailure& failure) {
  const PackageLog& log = failure.packageLog;
  const std::string line = log.line == 0 ? "" : "<pre>" + EscapedHtml(log.text) + "</pre>";
  const std::string component =
      failure.component.empty() ? "<span class=\"soft\">the run itself</span>" : EscapedHtml(failure.component);
  return "<tr>" + Cell(component + "<br><span class=\"soft\">" + EscapedHtml(failure.product) + "</span>", "name") +
         Cell(EscapedHtml(failure.reason) + line) + Cell(std::to_string(failure.machines.size()), "number") +
         Cell(ShownTime(failure.newest), "time") + Cell(MachineList(failure.machines)) + "</tr>\n";
}

std::string FailuresSection(const Fleet& fleet) {
  if (fleet.failures.empty()) return "";
  std::string html =
      "<h2>Failures, newest first</h2>\n<div class=\"sheet\"><table><tr><th>Component</th><th>Reason</th>"
      "<th class=\"number\">Machines</th><th>Newest</th><th>Which</th></tr>\n";
  for (const FleetFailure& failure : fleet.failures) html += FailureRow(failure);
  return html + "</table></div>\n";
}

std::string ComponentList(const LoggedRun& run) {
  if (run.components.empty()) return "";
  std::string rows;
  for (const LoggedComponent& component : run.components) {
    rows += "<tr>" + Cell(EscapedHtml(component.name)) + Cell(Badge(NameOf(component.outcome))) +
            Cell(EscapedHtml(component.reason)) + "</tr>";
  }
  return "<details><summary class=\"soft\">" + std::to_string(run.components.size()) +
         (run.components.size() == 1 ? " component" : " components") + "</summary><table>" + rows +
         "</table></details>";
}

/// The words by which the filter for components finds the machine: what failed on it.
std::string FailedWords(const LoggedRun& run) {
  std::string words;
  for (const LoggedComponent& component : run.components)
    if (component.outcome == Outcome::Failed) words += (words.empty() ? "" : "|") + EscapedHtml(component.name);
  return words;
}

std::string MachineRow(const FleetRun& run) {
  std::string reasons;
  for (const std::string& reason : run.run.product.reasons) reasons += "<div>" + EscapedHtml(reason) + "</div>";
  const bool unreadable = run.outcome == Unreadable;
  const std::string product = unreadable ? "" : EscapedHtml(ProductOf(run));
  return "<tr data-row data-outcome=\"" + EscapedHtml(run.outcome) + "\" data-product=\"" + product +
         "\" data-component=\"" + FailedWords(run.run) + "\">" + Cell(EscapedHtml(run.machine), "name") +
         Cell(product, "name") + Cell(Badge(run.outcome)) + Cell(EscapedHtml(ShownTime(run.run.lastTime)), "time") +
         Cell(unreadable ? "" : std::to_string(run.run.restarts), "number") + Cell(reasons + ComponentList(run.run)) +
         "</tr>\n";
}

std::string MachinesSection(const Fleet& fleet) {
  std::set<std::string> products;
  std::set<std::string> components;
  std::string rows;
  for (const FleetRun& run : fleet.runs) {
    if (run.outcome != Unreadable) products.insert(ProductOf(run));
    rows += MachineRow(run);
  }
  for (const FleetFailure& failure : fleet.failures)
    if (!failure.component.empty()) components.insert(failure.component);
  return "<h2>Machines</h2>\n<div class=\"filters\">" +
         FilterChoice("outcome", "Outcome", {std::begin(MachineOutcomes), std::end(MachineOutcomes)}) +
         FilterChoice("product", "Product", {products.begin(), products.end()}) +
         FilterChoice("component", "Failed component", {components.begin(), components.end()}) + FilterText() +
         "<span class=\"soft\" data-shown></span></div>\n<div class=\"sheet\"><table><tr><th>Machine</th>"
         "<th>Product</th><th>Outcome</th><th>Last row</th><th class=\"number\">Restarts</th><th>Reasons</th></tr>\n" +
         rows + "</table></div>\n";
}

std::string FilesSection(const Fleet& fleet) {
  std::string html;
  for (const Problem& problem : fleet.problems) html += "<div>" + EscapedHtml(problem.text) + "</div>";
  for (const std::string& path : fleet.passedOver)
    html += "<div class=\"soft\">" + EscapedHtml(path) + " is no log of the program and was passed over</div>";
  return html.empty() ? "" : "<h2>Files that were not read</h2>\n<div class=\"sheet\">" + html + "</div>\n";
}

}  // namespace

std::string FleetPage(const Fleet& fleet) {
  const std::string facts = std::to_string(fleet.machines) + (fleet.machines == 1 ? " machine" : " machines") +
                            ", the newest run of each product";
  return HtmlPage("Installations of the fleet", facts,
                  SharesSection(fleet) + FailuresSection(fleet) + MachinesSection(fleet) + FilesSection(fleet));
}

}  // namespace qxia::logs
