#pragma once

namespace caudalis {

/// A fault-injection point for the tests of interrupted saves: when the environment variable
/// `CAUDALIS_TEST_KILL_AFTER_STATEMENTS` holds a number N > 0, the process is killed (SIGKILL
/// where there is one, else ended at once without any clean-up) right after its N-th statement
/// (counting every `Execute`, `BeginTrans` and `CommitTrans`) has taken effect on the engine.
/// Without the variable nothing happens.
class StatementCountdown {
public:
    /// Counts one statement that has just run.
    static void afterStatement();
};

}  // namespace caudalis
