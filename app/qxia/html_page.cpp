#include "app/qxia/html_page.h"

#include "app/qxia/result.h"

namespace qxia {
namespace {

constexpr const char* Style = R"css(
:root { color-scheme: light dark; --ground: #f6f7f9; --sheet: #fff; --ink: #1c2430; --soft: #5b6675; --line: #d9dee5;
  --good: #2c7a4b; --fine: #3f7f8c; --held: #8a6d1f; --bad: #b3261e; --wait: #6650a4; --none: #77818f; }
@media (prefers-color-scheme: dark) { :root { --ground: #14181e; --sheet: #1c222b; --ink: #e4e8ee; --soft: #9aa5b4;
  --line: #323b47; --good: #5fb783; --fine: #6fb3c0; --held: #d1b25c; --bad: #f0857c; --wait: #b6a3f0; --none: #8b95a3; } }
* { box-sizing: border-box; }
body { margin: 0 auto; padding: 1.5rem 2rem 3rem; max-width: 78rem; background: var(--ground); color: var(--ink);
  font: 15px/1.45 system-ui, "Segoe UI", "DejaVu Sans", sans-serif; }
h1 { font-size: 1.6rem; margin: 0 0 .1rem; } h2 { font-size: 1.15rem; margin: 2rem 0 .6rem; }
.facts { color: var(--soft); margin: 0 0 1.2rem; }
.sheet { background: var(--sheet); border: 1px solid var(--line); border-radius: 8px; padding: 1rem 1.2rem;
  margin: 0 0 1rem; overflow-x: auto; }
.sheet > p { margin: 0 0 .5rem; } .sheet > p:not(:first-child) { margin-top: 1.4rem; } .sheet > :last-child { margin-bottom: 0; }
.sheet > table:not(:first-child) { margin-top: 1rem; } a { color: inherit; } .name { white-space: nowrap; }
tr[data-row]:target td { background: color-mix(in srgb, var(--wait) 18%, transparent); }
table { border-collapse: collapse; width: 100%; } caption { text-align: left; color: var(--soft); padding-bottom: .4rem; }
th { text-align: left; font-weight: 600; color: var(--soft); font-size: .85rem; }
th, td { padding: .34rem .8rem .34rem 0; vertical-align: top; border-bottom: 1px solid var(--line); }
tr:last-child > td { border-bottom: 0; } td.number, th.number { text-align: right; font-variant-numeric: tabular-nums; }
td.time { white-space: nowrap; font-variant-numeric: tabular-nums; color: var(--soft); } .soft { color: var(--soft); }
code, pre, .mono { font: 13px/1.45 ui-monospace, Consolas, "DejaVu Sans Mono", monospace; overflow-wrap: anywhere; }
pre { margin: .3rem 0 0; white-space: pre-wrap; }
.badge { display: inline-block; white-space: nowrap; border-radius: 1rem; padding: 0 .6rem; font-size: .82rem;
  font-weight: 600; color: var(--c, var(--none)); border: 1px solid currentColor; }
.bar { display: flex; gap: 2px; height: 1.5rem; border-radius: 6px; overflow: hidden; }
.bar > span { background: var(--c, var(--none)); min-width: 4px; }
.legend { display: flex; flex-wrap: wrap; gap: .3rem 1.4rem; margin: .6rem 0 0; padding: 0; list-style: none; }
.legend i { display: inline-block; width: .75rem; height: .75rem; border-radius: 3px; background: var(--c, var(--none));
  margin-right: .4rem; vertical-align: -1px; } .legend b { font-variant-numeric: tabular-nums; }
.installed, .removed, .succeeded { --c: var(--good); } .already-installed, .copied, .already-gone { --c: var(--fine); }
.held-back, .kept, .warning { --c: var(--held); } .failed, .error { --c: var(--bad); }
.waiting { --c: var(--wait); } .broken-off { --c: #a4537a; } .not-reached, .unreadable, .action { --c: var(--none); }
.filters { display: flex; flex-wrap: wrap; gap: .6rem 1.2rem; align-items: end; margin: 0 0 .8rem; }
.filters label { display: grid; gap: .15rem; font-size: .82rem; color: var(--soft); }
.filters select, .filters input { font: inherit; color: var(--ink); background: var(--sheet); min-width: 11rem;
  border: 1px solid var(--line); border-radius: 6px; padding: .25rem .5rem; }
tr.error td { color: var(--bad); } tr.warning td { color: var(--held); } tr.error td.time, tr.warning td.time { color: var(--soft); }
details > summary { cursor: pointer; } [hidden] { display: none; }
@media print { body { background: none; max-width: none; padding: 0; } .filters { display: none; } .sheet { border: 0; padding: 0; } }
)css";

/// Rows that a filter hides stay in the page, so that printing and searching find what is shown.
constexpr const char* Script = R"js(
(function () {
  const choices = [...document.querySelectorAll('select[data-filter]')];
  const text = document.querySelector('input[data-filter-text]');
  if (!choices.length && !text) return;
  const names = choices.map(c => c.dataset.filter);
  const rows = [...document.querySelectorAll('[data-row]')];
  const counter = document.querySelector('[data-shown]');
  function fits(row, name, wanted) {
    return wanted === '' || (row.getAttribute('data-' + name) || '').split('|').includes(wanted);
  }
  function apply() {
    const words = text ? text.value.toLowerCase() : '';
    let shown = 0;
    for (const row of rows) {
      const show = choices.every((c, i) => fits(row, names[i], c.value)) &&
        (words === '' || row.textContent.toLowerCase().includes(words));
      row.hidden = !show;
      if (show) shown++;
    }
    if (counter) counter.textContent = shown + ' of ' + rows.length + ' shown';
  }
  choices.forEach(c => c.addEventListener('change', apply));
  if (text) text.addEventListener('input', apply);
  apply();
})();
)js";

const char* EntityOf(char character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return nullptr;
  }
}

}  // namespace

std::string EscapedHtml(std::string_view text) {
  std::string escaped;
  for (const char character : ToUtf8(std::string(text))) {
    const char* entity = EntityOf(character);
    const bool isControl = static_cast<unsigned char>(character) < ' ' && character != '\n' && character != '\t';
    if (entity != nullptr) {
      escaped += entity;
    } else {
      escaped += isControl ? ' ' : character;
    }
  }
  return escaped;
}

std::string CssClass(std::string_view word) {
  std::string name;
  for (const char character : word) name += character == ' ' ? '-' : character;
  return EscapedHtml(name);
}

std::string Badge(std::string_view outcome) {
  return "<span class=\"badge " + CssClass(outcome) + "\">" + EscapedHtml(outcome) + "</span>";
}

std::string ShareBar(const std::vector<Share>& shares) {
  std::string bar;
  std::string legend;
  for (const Share& share : shares) {
    if (share.count == 0) continue;
    const std::string count = std::to_string(share.count);
    const std::string name = EscapedHtml(share.name);
    const std::string opening = "class=\"" + CssClass(share.name) + "\"";
    bar.append("<span ").append(opening).append(" style=\"flex:").append(count).append("\" title=\"");
    bar.append(name).append(": ").append(count).append("\"></span>");
    legend.append("<li ").append(opening).append("><i></i>").append(name).append(" <b>").append(count);
    legend.append("</b></li>");
  }
  return "<div class=\"bar\">" + bar + "</div><ul class=\"legend\">" + legend + "</ul>\n";
}

std::string FilterChoice(std::string_view name, std::string_view label, const std::vector<std::string>& choices) {
  std::string html = "<label>" + EscapedHtml(label) + "<select data-filter=\"" + EscapedHtml(name) +
                     "\"><option value=\"\">all</option>";
  for (const std::string& choice : choices) {
    const std::string text = EscapedHtml(choice);
    html.append("<option value=\"").append(text).append("\">").append(text).append("</option>");
  }
  return html + "</select></label>";
}

std::string FilterText() {
  return "<label>Text<input type=\"search\" data-filter-text placeholder=\"any word\"></label>";
}

std::string HtmlPage(std::string_view title, std::string_view facts, std::string_view body, std::string_view style) {
  const std::string shown = EscapedHtml(title);
  std::string page = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">";
  page.append("<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"><title>").append(shown);
  page.append("</title><style>")
      .append(Style)
      .append(style)
      .append("</style></head><body>\n<h1>")
      .append(shown)
      .append("</h1>\n");
  page.append("<p class=\"facts\">").append(facts).append("</p>\n").append(body);
  return page.append("<script>").append(Script).append("</script></body></html>\n");
}

}  // namespace qxia
