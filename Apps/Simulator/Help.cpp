#include "Apps/Simulator/Options.hpp"

namespace Simulator {

std::string helpText() {
    std::string rules;
    std::string line;
    for (const std::string& rule : allRules()) {
        if (line.size() + rule.size() > 90) {
            rules += "                      " + line + '\n';
            line.clear();
        }
        line += rule + ' ';
    }
    rules += "                      " + line + '\n';
    return R"(Usage: Simulator [option...]
       Simulator --draw FILE [option...]

Two to eight analysts with whole applications share a live session, tag and edit at random, lose calls, events, links and
streams, leave and come back; all on one virtual clock in one process, so that a seed repeats to the letter. Each run is
checked: what must hold in every run, and what became of everything that the users did. A difference that no known class of
loss explains is a failure. Failures come with the shortest plan found that still fails in the same way.

Which runs:
  --seeds N           how many seeds (default 100, or as many as --minutes allows)
  --first-seed N      the first of them (default 1)
  --operations N      how many steps each plan has (default 200)
  --analysts N        2 to 8 (default: drawn for each seed)
  --no-faults         nothing goes wrong but what users do to each other
  --break RULE        the hosts break this rule of their contract; what it costs is counted. May be said several times:
)" + rules +
           R"(  --plan FILE         runs this plan instead, twice, and compares the two

How:
  --jobs N            threads (default: as many as there are cores); each run stays on one
  --minutes M         begins no further seed after M minutes
  --failures N        ends the search when N rules have been found broken (default 3)
  --tries N           runs to spend on shortening each failing plan (default 800; with --plan 0)

What is written besides the report:
  --save FILE         the plan of a single run
  --trace FILE        the trace of a single run
  --plans FOLDER      where the shortened plans of failures go (default: a temporary folder)
  --save-classes FOLDER   for each class of loss that was met, a shortened plan that shows it
  --list              each finding of each seed that fails, on a line
  --coverage          how often each edit, fault, loss and failure was exercised
  --require-coverage  and what never was is a failure

Drawing a trace:
  --draw FILE         draws a saved trace as one timeline, a column for each analyst
  --from S, --to S    only this time, in seconds
  --analyst NAME      only this analyst; may be said several times
  --about ID          only what concerns one moment, clip or row: its id, the beginning of it, or its short name
  --all               with the log's information lines and the notifications
  --width N           in columns (default 160; more than four analysts take more)

  --help              this text

Exit status: 0 when nothing failed, 1 when something did, 2 when the options or a file cannot be used.
)";
}

}  // namespace Simulator
