#include "caudalis/project/ProgressBar.hpp"

#include <string>

namespace caudalis::project {

ProgressBar::ProgressBar(std::ostream& out, long steps, bool shown, const char* label)
    : out_(out), steps_(steps), shown_(shown && steps > minimumSteps), label_(label) {
    draw();
}

ProgressBar::~ProgressBar() {
    if (shown_) {
        out_ << '\n' << std::flush;
    }
}

void ProgressBar::advance() {
    ++done_;
    draw();
}

void ProgressBar::draw() const {
    if (!shown_) {
        return;
    }
    const auto filled = static_cast<std::size_t>(done_ * width / steps_);
    out_ << '\r' << label_ << " [" << std::string(filled, '#') << std::string(width - filled, ' ') << "] "
         << done_ << '/' << steps_ << std::flush;
}

}  // namespace caudalis::project
