// The pages that verbs write: one family, each a single file without anything from elsewhere.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qxia {

/// A text as it may stand between tags and in quoted attributes, of XML too. What is in code page 1252 becomes UTF-8.
std::string EscapedHtml(std::string_view text);

/// The class under which the style sheet knows a word such as "held back": "held-back". Known are the outcomes of
/// components ("installed", "failed", ...) and of machines ("succeeded", "waiting", "broken off", "unreadable").
std::string CssClass(std::string_view word);

/// An outcome as a coloured mark.
std::string Badge(std::string_view outcome);

/// One part of a bar.
struct Share {
  std::string name;  ///< also its class
  std::size_t count = 0;
};

/// The shares as one bar with a legend below it; parts without a count are left out.
std::string ShareBar(const std::vector<Share>& shares);

/// A filter of the page's rows: elements with the attribute data-NAME are hidden unless it is the one chosen. Several
/// filters hold together; where an attribute holds several words, they are separated by bars.
std::string FilterChoice(std::string_view name, std::string_view label, const std::vector<std::string>& choices);
/// The same for a text that is typed: it is looked for in the rows that have any filter's attribute.
std::string FilterText();

/// A whole page. `facts` is the line below the heading, `body` the rest; both are HTML. `style` is what the style sheet
/// has besides.
std::string HtmlPage(std::string_view title, std::string_view facts, std::string_view body,
                     std::string_view style = {});

}  // namespace qxia
