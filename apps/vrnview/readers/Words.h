#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vrn::host {

/// A text taken apart from front to back, into lines and words; no locale plays a part. Thread:
/// pure.
///
///     Words words("1 2.5\n3");
///     words.next();  // "1"
class Words {
public:
    /// `text` must outlive the object.
    explicit Words(std::string_view text) : rest(text) {}

    /// The next word between white space, over line ends; empty at the end.
    [[nodiscard]] std::string_view next();
    /// The rest of the line, without its end ("\n" or "\r\n"); empty at the end too.
    [[nodiscard]] std::string_view line();
    [[nodiscard]] bool atEnd() const { return rest.empty(); }
    /// What has not been taken yet.
    [[nodiscard]] std::string_view remaining() const { return rest; }

private:
    std::string_view rest;
};

/// A whole word as a number: C notation, perhaps with a plus sign, "nan" and "inf" included. What
/// is too large becomes infinite, what is too small 0. Nothing for any other word. Thread: pure.
[[nodiscard]] std::optional<double> NumberOf(std::string_view word);

/// A whole word of digits; nothing for any other and for what needs more than 64 bits. Thread:
/// pure.
[[nodiscard]] std::optional<std::uint64_t> CountOf(std::string_view word);

}  // namespace vrn::host
