#include "LocaleGuard.hpp"

namespace caudalis::testing {
namespace {

class SeparatorFacet : public std::numpunct<char> {
public:
    explicit SeparatorFacet(char separator) : separator_(separator) {}

protected:
    char do_decimal_point() const override { return separator_; }
    char do_thousands_sep() const override { return separator_ == ',' ? '.' : ','; }

private:
    char separator_;
};

}  // namespace

DecimalSeparatorGuard::DecimalSeparatorGuard(char separator)
    : previous_(std::locale::global(std::locale(std::locale::classic(), new SeparatorFacet(separator)))) {}

DecimalSeparatorGuard::~DecimalSeparatorGuard() {
    std::locale::global(previous_);
}

}  // namespace caudalis::testing
