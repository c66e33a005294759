#pragma once

#include <ostream>

namespace caudalis::project {

/// A one-line progress bar ("[#####     ] 120/398") redrawn in place on a terminal. A bar that
/// is not shown does nothing, so callers need not test.
class ProgressBar {
public:
    /// Shown only when `shown` and there are more than `minimumSteps` steps.
    ProgressBar(std::ostream& out, long steps, bool shown, const char* label);
    /// Ends the line when the bar was drawn.
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void advance();

    static constexpr long minimumSteps = 50;
    static constexpr int width = 40;

private:
    void draw() const;

    std::ostream& out_;
    long steps_;
    long done_ = 0;
    bool shown_;
    const char* label_;
};

}  // namespace caudalis::project
