#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace vkr::tool {

// "help fuse" as "fuse --help", "help" as "--help"; anything else as it is. Arguments without the program's name.
std::vector<std::string> WithHelpWords(std::vector<std::string> vArguments);

// For arguments that the parser has refused: names the first word that is no command, or the first option (two dashes)
// that neither the program nor the command knows, and what was probably meant. Empty where neither is the trouble.
std::string TypingAdvice(const CLI::App& app, const std::vector<std::string>& vArguments);

}  // namespace vkr::tool
