#include "commands/typing_help.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "library/nearest_name.h"

namespace vkr::tool {

namespace {

using Words = std::vector<std::string>;

constexpr size_t kMostSlips = 2;  // letters that may be wrong: two that changed places are two

bool Holds(const Words& vWords, const std::string& sWord)
{
    return std::find(vWords.begin(), vWords.end(), sWord) != vWords.end();
}

std::string Sentence(const char* pKind, const std::string& sWord, const Words& vKnown)
{
    const std::string sNearest = NearestName(sWord, vKnown, kMostSlips);
    return std::string("there is no ") + pKind + " '" + sWord + "'" +
           (sNearest.empty() ? std::string() : "; did you mean " + sNearest + "?");
}

void AddOptions(const CLI::App& app, Words& vKnown)
{
    for (const CLI::Option* pOption : app.get_options()) {
        for (const std::string& sName : pOption->get_lnames()) vKnown.push_back("--" + sName);
    }
}

Words Commands(const CLI::App& app)
{
    Words vNames;
    for (const CLI::App* pCommand : app.get_subcommands({})) vNames.push_back(pCommand->get_name());
    return vNames;
}

}  // namespace

Words WithHelpWords(Words vArguments)
{
    if (vArguments.empty() || vArguments[0] != "help") return vArguments;
    if (vArguments.size() == 1) return {"--help"};
    return {vArguments[1], "--help"};
}

std::string TypingAdvice(const CLI::App& app, const Words& vArguments)
{
    const Words vCommands = Commands(app);
    const auto IsWord = [](const std::string& sArgument) { return sArgument.rfind('-', 0) != 0; };
    const bool bNamed = std::any_of(vArguments.begin(), vArguments.end(),
                                    [&](const std::string& sArgument) { return Holds(vCommands, sArgument); });
    const auto pWord = std::find_if(vArguments.begin(), vArguments.end(), IsWord);
    if (!bNamed && pWord != vArguments.end()) return Sentence("command", *pWord, vCommands);

    Words vOptions;
    AddOptions(app, vOptions);
    for (const CLI::App* pCommand : app.get_subcommands({})) {
        if (Holds(vArguments, pCommand->get_name())) AddOptions(*pCommand, vOptions);
    }
    for (const std::string& sArgument : vArguments) {
        const std::string sName = sArgument.substr(0, sArgument.find('='));
        if (sName == "--") break;
        if (sName.rfind("--", 0) == 0 && !Holds(vOptions, sName)) return Sentence("option", sName, vOptions);
    }
    return "";
}

}  // namespace vkr::tool
