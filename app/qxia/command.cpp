#include "app/qxia/command.h"

#include <algorithm>
#include <cstdio>

#include "base/version.h"

namespace qxia {
namespace {

const Option* FindOption(std::span<const Option> options, const std::string& name) {
  const auto found = std::find_if(options.begin(), options.end(), [&](const Option& o) { return name == o.name; });
  return found == options.end() ? nullptr : &*found;
}

const Verb* FindVerb(std::span<const Verb> verbs, const std::string& name) {
  const auto found = std::find_if(verbs.begin(), verbs.end(), [&](const Verb& verb) { return name == verb.name; });
  return found == verbs.end() ? nullptr : &*found;
}

void PrintVerbs(std::span<const Verb> verbs) {
  std::printf("qxia VERB ...\n\n");
  for (const Verb& verb : verbs) {
    const std::string usage = std::string(verb.name) + " " + verb.operands;
    std::printf("  %-22s %s\n", usage.c_str(), verb.summary);
  }
  std::printf("\nqxia VERB --help tells more of one; qxia --version tells the version.\n");
}

void PrintIndented(const char* text, int columns) {
  for (const char* at = text; *at != '\0'; ++at) {
    std::putchar(*at);
    if (*at == '\n') std::printf("%*s", columns, "");
  }
  std::putchar('\n');
}

void PrintHelp(const Verb& verb) {
  constexpr int column = 24;
  std::printf("qxia %s %s\n\n%s\n\n", verb.name, verb.operands, verb.summary);
  for (const Option& option : verb.options) {
    const std::string shown =
        std::string(option.name) + (option.value == nullptr ? "" : " ") + (option.value == nullptr ? "" : option.value);
    std::printf("  %-*s", column - 2, shown.c_str());
    PrintIndented(option.help, column);
  }
  std::printf("\nExit codes:\n  ");
  PrintIndented(verb.exitCodes, 2);
}

std::string VerbNames(std::span<const Verb> verbs) {
  std::string names;
  for (const Verb& verb : verbs) names += (names.empty() ? "" : ", ") + std::string(verb.name);
  return names;
}

int RunVerb(const Verb& verb, const std::vector<std::string>& words) {
  if (std::find(words.begin(), words.end(), "--help") != words.end()) {
    PrintHelp(verb);
    return 0;
  }
  return verb.run(Arguments(words, verb.options));
}

int Dispatch(std::span<const Verb> verbs, const std::vector<std::string>& words) {
  if (words.empty() || words[0] == "--help") {
    PrintVerbs(verbs);
    return words.empty() ? Unusable : 0;
  }
  if (words[0] == "--version") {
    std::printf("qxia %s\n", QXIA_VERSION_TEXT);
    return 0;
  }
  const Verb* verb = FindVerb(verbs, words[0]);
  if (verb == nullptr) throw UsageError(words[0] + " is no verb: write one of " + VerbNames(verbs));
  return RunVerb(*verb, {words.begin() + 1, words.end()});
}

}  // namespace

Arguments::Arguments(const std::vector<std::string>& words, std::span<const Option> options) {
  bool optionsEnded = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (optionsEnded || word.size() < 2 || word[0] != '-') {
      operands_.push_back(word);
    } else if (word == "--") {
      optionsEnded = true;
    } else {
      const Option* option = FindOption(options, word);
      if (option == nullptr) throw UsageError(word + " is no option here: --help lists them");
      if (option->value != nullptr && i + 1 == words.size())
        throw UsageError(word + " needs a value behind it: " + word + " " + option->value);
      given_.push_back({word, option->value == nullptr ? "" : words[++i]});
    }
  }
}

std::string Arguments::text(const std::string& option, const std::string& otherwise) const {
  const std::vector<std::string> values = all(option);
  return values.empty() ? otherwise : values.back();
}

std::vector<std::string> Arguments::all(const std::string& option) const {
  std::vector<std::string> values;
  for (const Given& given : given_)
    if (given.option == option) values.push_back(given.value);
  return values;
}

int RunCommand(std::span<const Verb> verbs, const std::vector<std::string>& words) {
  try {
    return Dispatch(verbs, words);
  } catch (const std::runtime_error& refused) {
    std::fprintf(stderr, "qxia: %s\n", refused.what());
    return Unusable;
  }
}

}  // namespace qxia
