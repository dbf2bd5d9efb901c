#include "apps/vrnview/readers/Words.h"

#include <charconv>
#include <limits>
#include <system_error>

namespace vrn::host {

namespace {

constexpr std::string_view blanks = " \t\r\n\v\f";

/// A number that is out of range although it is written as one.
double BeyondRange(std::string_view word) {
    const std::size_t exponent = word.find_first_of("eE");
    const bool small = exponent == std::string_view::npos
                           ? word.find_first_of("123456789") > word.find('.')
                           : exponent + 1 < word.size() && word[exponent + 1] == '-';
    const double size = small ? 0.0 : std::numeric_limits<double>::infinity();
    return word.starts_with('-') ? -size : size;
}

}  // namespace

std::string_view Words::next() {
    const std::size_t start = rest.find_first_not_of(blanks);
    if (start == std::string_view::npos) {
        rest = {};
        return {};
    }
    rest.remove_prefix(start);
    const std::string_view word = rest.substr(0, rest.find_first_of(blanks));
    rest.remove_prefix(word.size());
    return word;
}

std::string_view Words::line() {
    const std::size_t end = rest.find('\n');
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

std::optional<double> NumberOf(std::string_view word) {
    // from_chars knows no plus sign; "+-1" is none of its words either way.
    if (word.starts_with('+') && !word.starts_with("+-")) word.remove_prefix(1);
    double value = 0;
    const char* const last = word.data() + word.size();
    const auto [end, error] = std::from_chars(word.data(), last, value);
    if (word.empty() || end != last) return std::nullopt;
    if (error == std::errc::result_out_of_range) return BeyondRange(word);
    return error == std::errc{} ? std::optional(value) : std::nullopt;
}

std::optional<std::uint64_t> CountOf(std::string_view word) {
    std::uint64_t value = 0;
    const char* const last = word.data() + word.size();
    const auto [end, error] = std::from_chars(word.data(), last, value);
    if (word.empty() || end != last || error != std::errc{}) return std::nullopt;
    return value;
}

}  // namespace vrn::host
