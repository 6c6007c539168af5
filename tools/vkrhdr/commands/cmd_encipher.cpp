#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>

#include "commands/commands.h"
#include "flow/enciphered_parameters.h"
#include "foundation/cipher.h"
#include "library/tool_parameters.h"
#include "pictures/tool_error.h"
#include "pictures/whole_file.h"

namespace vkr::tool {

namespace {

void DefineFiles(CLI::App& command, EncipherOptions& options)
{
    command.add_option("IN", options.sInput, "the parameter file")->required()->check(CLI::ExistingFile);
    command.add_option("-o,--output", options.sOutput, "the file to write")->required();
}

void CheckFiles(const EncipherOptions& options)
{
    ProtectFile(options.sInput);
    CheckPlace(options.sOutput);
}

// The whole blocks of the text in one direction; what is left stays in the clear.
void CipherText(Bytes& vFile, int nDirection)
{
    const size_t nText = vFile.size() - kEncipheredHead;
    uint8_t* pText = vFile.data() + kEncipheredHead;
    if (vFile.size() > kEncipheredMost ||
        DecipherBuffer(pText, pText, static_cast<int>(nText), kParameterFileKey, nDirection) == 0) {
        throw BurstError("the text must have 8 bytes at least, and the whole file 16 MiB at most");
    }
}

// The library takes the first entry that it finds, so a second one would never be shown.
void AppendVersion(const std::string& sInput, const std::string& sVersion, Bytes& vText)
{
    const std::string_view text(reinterpret_cast<const char*>(vText.data()), vText.size());
    if (text.find("cfg_version") != std::string_view::npos) {
        throw UsageError(sInput + " has a cfg_version of its own: remove that line, or leave --cfg-version out");
    }
    const std::string sEntry = "\ncfg_version=" + sVersion + ";\n";
    vText.insert(vText.end(), sEntry.begin(), sEntry.end());
}

}  // namespace

CLI::App* DefineEncipher(CLI::App& app, EncipherOptions& options)
{
    CLI::App* pCommand =
        app.add_subcommand("encipher", "Makes a parameter file unreadable; the library loads it as it is.");
    DefineFiles(*pCommand, options);
    pCommand->add_option("--cfg-version", options.sConfigVersion,
                         "configuration version that vkrHdrGetVersion is to show, 7 to 64 characters");
    return pCommand;
}

CLI::App* DefineDecipher(CLI::App& app, EncipherOptions& options)
{
    CLI::App* pCommand = app.add_subcommand("decipher", "Makes an enciphered parameter file readable.");
    DefineFiles(*pCommand, options);
    return pCommand;
}

void RunEncipher(const EncipherOptions& options, Remarks& remarks)
{
    const std::string& sVersion = options.sConfigVersion;
    if (!sVersion.empty() && (sVersion.size() < 7 || sVersion.size() > 64 || sVersion.find(';') != std::string::npos)) {
        throw UsageError("--cfg-version takes 7 to 64 characters without ';'");
    }
    CheckFiles(options);
    Bytes vText = ReadWholeFile(options.sInput, kEncipheredMost);
    if (IsEnciphered(vText.data(), vText.size())) throw BurstError(options.sInput + " is enciphered already");
    if (!sVersion.empty()) AppendVersion(options.sInput, sVersion, vText);
    Bytes vFile(kEncipheredHead + vText.size());
    std::copy_n(kEncipheredMagic, sizeof(kEncipheredMagic), vFile.begin());
    std::copy(vText.begin(), vText.end(), vFile.begin() + kEncipheredHead);
    CipherText(vFile, 0);

    LibraryLines lines(&remarks);
    ToolParameters(ToolParameters::Base::kRegistered).LoadEnciphered(options.sInput, vFile, lines);
    WriteWholeFile(options.sOutput, vFile);
}

void RunDecipher(const EncipherOptions& options)
{
    CheckFiles(options);
    Bytes vFile = ReadWholeFile(options.sInput, kEncipheredMost);
    if (!IsEnciphered(vFile.data(), vFile.size()) || vFile.size() < kEncipheredHead) {
        throw BurstError(options.sInput + " is no enciphered parameter file");
    }
    CipherText(vFile, 1);
    vFile.erase(vFile.begin(), vFile.begin() + kEncipheredHead);
    WriteWholeFile(options.sOutput, vFile);
}

}  // namespace vkr::tool
