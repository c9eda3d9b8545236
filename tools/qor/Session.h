#pragma once

#include "qor/SafeText.h"

#include <ostream>

namespace qorprogram {

/// The help text of --quiet.
constexpr char const* quietHelp = "Print no progress and no remarks";

/// The state that verbs share: the streams for their results and remarks, and the exit code.
class Session {
public:
    Session(int argc, char const* const* argv, std::ostream& forResults, std::ostream& forRemarks)
        : out(forResults), safe(argc, argv), err(forRemarks) {}

    /// Writes a remark or an error, a line that shows no secret. Nothing else goes there.
    void say(std::string const& text) { err << safe(text) << std::endl; }

    /// Writes a line of remarks, unless --quiet is set.
    void remark(std::string const& text) {
        if (!quiet) {
            say("qor: " + text);
        }
    }

    std::ostream& out;
    bool quiet = false; ///< no remarks, but still errors
    int exitCode = 0;

private:
    SafeText safe;
    std::ostream& err;
};

} // namespace qorprogram
