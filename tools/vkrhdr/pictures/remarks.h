#pragma once

#include <string>

namespace vkr::tool {

enum class RemarkLevel {
    kPlain,    // every user should see it: what was read, decided, left out
    kVerbose,  // only who asks for more: figures, the library's own lines
};

// Takes what a user should hear while a burst is worked on. Nothing below the command line prints by itself: a front
// end hands one of these in and shows, collects or drops the lines. They come in the order of what they tell, one call
// at a time; those of kVerbose may come from the library's threads, so Add must neither throw nor call into the
// library.
class Remarks {
public:
    virtual ~Remarks() = default;

    // One line of UTF-8, as file names have it, without a line end.
    virtual void Add(RemarkLevel level, const std::string& sLine) = 0;

    // Add, of any length, as printf would write it.
    void Say(const char* pFormat, ...) __attribute__((format(printf, 2, 3)));
    void SayVerbose(const char* pFormat, ...) __attribute__((format(printf, 2, 3)));
};

}  // namespace vkr::tool
