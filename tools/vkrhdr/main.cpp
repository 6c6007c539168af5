#include <hwy/targets.h>
#include <omp.h>
#include <pthread.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "commands/standard_error.h"
#include "commands/typing_help.h"
#include "pictures/own_file.h"
#include "pictures/tool_error.h"
#include "vkrHdr.h"

namespace vkr::tool {

namespace {

constexpr int kStatusBurst = 1, kStatusUsage = 2;

void DefineCommon(CLI::App& app, CommonOptions& common)
{
    app.add_option("--threads", common.nThreads, "threads of the parallel loops")->check(CLI::Range(1, 256));
    app.add_option("--simd", common.sSimd, "off: the plain form of every loop; the bytes are the same")
        ->check(CLI::IsMember({"on", "off"}));
    app.add_flag("--verbose", common.bVerbose, "show the library's own lines on standard error");
}

// Before the first loop runs: what is dispatched once stays.
void ApplyCommon(const CommonOptions& common)
{
    if (common.nThreads > 0) omp_set_num_threads(common.nThreads);
    if (common.sSimd == "off") hwy::DisableTargets(~static_cast<int64_t>(HWY_STATIC_TARGET));
}

// The parser's messages may be long; the first line says it.
int UsageLine(std::string sWords)
{
    sWords.resize(std::min(sWords.find('\n'), sWords.size()));
    std::fprintf(stderr, "vkrhdr: %s; see vkrhdr --help\n", sWords.c_str());
    return kStatusUsage;
}

// What was printed may be lost: a full disk, a reader that is gone.
void CheckPrinted()
{
    std::cout.flush();
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0 || !std::cout) {
        throw BurstError("standard output can not be written");
    }
}

int Run(int argc, char** argv)
{
    CLI::App app("Fuses a burst of differently exposed pictures into one.", "vkrhdr");
    app.set_version_flag("-V,--version", std::string("vkrhdr ") + vkrHdrGetVersion()->pVersion);
    app.require_subcommand(1);
    app.fallthrough();
    CommonOptions common;
    FuseOptions fuse;
    AlignOptions align;
    InspectOptions inspect;
    FacesOptions faces;
    ParamsOptions params;
    EncipherOptions encipher, decipher;
    DemoOptions demo;
    BenchOptions bench;
    DefineCommon(app, common);
    const CLI::App* pFuse = DefineFuse(app, fuse);
    const CLI::App* pAlign = DefineAlign(app, align);
    const CLI::App* pInspect = DefineInspect(app, inspect);
    const CLI::App* pFaces = DefineFaces(app, faces);
    const CLI::App* pParams = DefineParams(app, params);
    const CLI::App* pEncipher = DefineEncipher(app, encipher);
    const CLI::App* pDecipher = DefineDecipher(app, decipher);
    const CLI::App* pDemo = DefineDemo(app, demo);
    const CLI::App* pBench = DefineBench(app, bench);
    const std::vector<std::string> vArguments = WithHelpWords({argv + std::min(argc, 1), argv + argc});
    if (argc > 2 && std::string(argv[1]) == "help") {  // the parser would take the question for help itself
        const std::string sAdvice = TypingAdvice(app, vArguments);
        if (!sAdvice.empty()) return UsageLine(sAdvice);
    }
    try {
        app.parse(std::vector<std::string>(vArguments.rbegin(), vArguments.rend()));  // last one first, for the parser
    } catch (const CLI::Success& help) {
        const int nStatus = app.exit(help);
        CheckPrinted();
        return nStatus;
    } catch (const CLI::ParseError& error) {
        const std::string sAdvice = TypingAdvice(app, vArguments);
        return UsageLine(sAdvice.empty() ? error.what() : sAdvice);
    }
    ApplyCommon(common);
    StandardError remarks(common.bVerbose);
    if (pFuse->parsed()) RunFuse(fuse, remarks);
    if (pAlign->parsed()) RunAlign(align, remarks);
    if (pInspect->parsed()) RunInspect(inspect, remarks);
    if (pFaces->parsed()) RunFaces(faces, remarks);
    if (pParams->parsed()) RunParams(params);
    if (pEncipher->parsed()) RunEncipher(encipher, remarks);
    if (pDecipher->parsed()) RunDecipher(decipher);
    if (pDemo->parsed()) RunDemo(demo, remarks);
    if (pBench->parsed()) RunBench(bench, remarks);
    CheckPrinted();
    return 0;
}

// Where an exception may not leave a function, the process ends here: the parser of options promises for some of its
// own that they need no memory.
[[noreturn]] void EndWithoutMemory()
{
    static constexpr char kLine[] = "vkrhdr: there is not enough memory, not even to say more\n";
    bool bMemory = false;
    try {
        if (std::current_exception()) std::rethrow_exception(std::current_exception());
    } catch (const std::bad_alloc&) {
        bMemory = true;
    } catch (...) {
    }
    if (!bMemory) std::abort();
    if (write(STDERR_FILENO, kLine, sizeof(kLine) - 1) < 0) _exit(kStatusBurst);
    _exit(kStatusBurst);
}

// A thread of OpenMP's team ends by pthread_exit, and the first one to do so makes the C library load what it needs for
// that: without memory it would end the process by a signal. So the first one is this.
void PrepareThreadEnds()
{
    pthread_t thread;
    const auto End = [](void*) -> void* { pthread_exit(nullptr); };
    if (pthread_create(&thread, nullptr, End, nullptr) == 0) pthread_join(thread, nullptr);
}

}  // namespace

}  // namespace vkr::tool

int main(int argc, char** argv)
{
    vkr::tool::RemoveOwnFilesOnSignals();
    std::set_terminate(vkr::tool::EndWithoutMemory);
    vkr::tool::PrepareThreadEnds();
    try {
        return vkr::tool::Run(argc, argv);
    } catch (const vkr::tool::UsageError& error) {
        std::fprintf(stderr, "vkrhdr: %s\n", error.what());
        return vkr::tool::kStatusUsage;
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "vkrhdr: there is not enough memory\n");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vkrhdr: %s\n", error.what());
    }
    return vkr::tool::kStatusBurst;
}
