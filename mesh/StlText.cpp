#include "mesh/StlText.h"

#include "mesh/Mesh.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace vrn::visual {

namespace {

using Pos = rob::PosTemplate<float>;
using Vec = rob::Vec3Template<float>;

/// The white space of the "C" locale, whatever the host's.
bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool IsLineEnd(char c) { return c == '\n' || c == '\r'; }

/// Whether a number that does not fit into a float is too small for it rather than too large: then
/// it counts as zero. `word` is digits with perhaps a sign, a point and an exponent.
bool IsTiny(std::string_view word) {
    const std::size_t exponentAt = std::min(word.find_first_of("eE"), word.size());
    const std::string_view digits = word.substr(0, exponentAt);
    const std::size_t firstDigit = digits.find_first_of("123456789");
    const std::size_t point = std::min(digits.find('.'), digits.size());
    // The power of ten of the first digit that counts, as the digits alone tell it ...
    const long power = static_cast<long>(point) - static_cast<long>(firstDigit);
    // ... and as the exponent shifts it; an exponent too long for a number decides by its sign.
    std::string_view exponentText = word.substr(std::min(exponentAt + 1, word.size()));
    if (exponentText.starts_with('+')) exponentText.remove_prefix(1);
    long exponent = 0;
    const auto [last, error] =
        std::from_chars(exponentText.data(), exponentText.data() + exponentText.size(), exponent);
    if (error == std::errc::result_out_of_range) return exponentText.starts_with('-');
    return exponent < -power;
}

/// Whether narrowing `d` to a float might round the decimal number behind it to the wrong side:
/// only where `d` lies half-way between two floats, since rounding to double cannot carry a number
/// across such a place.
bool IsHalfway(double d) {
    constexpr std::uint64_t lostBits = (std::uint64_t{1} << 29) - 1;
    return (std::bit_cast<std::uint64_t>(d) & lostBits) == (lostBits + 1) / 2;
}

/// Appends the digits at `p` to `digits`, wrapping round beyond 64 bits; returns what follows them.
const char* ReadDigits(const char* p, std::uint64_t& digits) {
    for (; *p >= '0' && *p <= '9'; ++p) digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
    return p;
}

/// Adds the exponent at `p`, behind its "e", to `exponent`; null if there is none or it is
/// overlong.
const char* ReadExponent(const char* p, std::ptrdiff_t& exponent) {
    constexpr std::ptrdiff_t mostDigits = 4;
    const bool down = *p == '-';
    if (down || *p == '+') ++p;
    std::uint64_t digits = 0;
    const char* const last = ReadDigits(p, digits);
    if (last == p || last - p > mostDigits) return nullptr;
    exponent += down ? -static_cast<std::ptrdiff_t>(digits) : static_cast<std::ptrdiff_t>(digits);
    return last;
}

/// Makes room for the facets ahead, if they are as long as the one just read. Only address space is
/// taken until they come, but a first facet of a few bytes must not ask for too much of it.
void ReserveAhead(Mesh& mesh, std::size_t facetSize, std::size_t bytesLeft) {
    constexpr std::size_t shortestUseful = 60;
    const std::size_t ahead = bytesLeft / std::max(facetSize, shortestUseful) * 3;
    mesh.vertices.reserve(mesh.vertices.size() + ahead);
    mesh.normals.reserve(mesh.normals.size() + ahead);
    mesh.indices.reserve(mesh.indices.size() + ahead);
}

}  // namespace

/// Walks over the words of a text that ends with a zero.
class StlWords {
public:
    explicit StlWords(const char* text) : position(text), end(text + std::strlen(text)) {}

    /// The next word; empty at the end of the text.
    std::string_view next() {
        while (IsSpace(*position)) ++position;
        const char* const start = position;
        while (*position != '\0' && !IsSpace(*position)) ++position;
        return {start, position};
    }

    /// How many bytes lie ahead.
    std::size_t left() const { return static_cast<std::size_t>(end - position); }

    void skipLine() {
        while (*position != '\0' && !IsLineEnd(*position)) ++position;
    }

    /// Reads three numbers; false if a word is not a number as a whole or out of range.
    template <class Triple>
    bool readThree(Triple& triple) {
        return readNumber(triple.x) && readNumber(triple.y) && readNumber(triple.z);
    }

private:
    bool readNumber(float& number);
    bool readPlainNumber(float& number);

    const char* position;
    const char* const end;
};

/// Reads a number as most files write them, several times faster than from_chars. Where this does
/// not give the nearest float for certain, or the word is anything else: false, and the position
/// stays.
///
/// Whole numbers up to 2^53 and powers of ten up to 10^22 are exact as double, so one division or
/// multiplication rounds once: Clinger, "How to read floating point numbers accurately", PLDI 1990.
bool StlWords::readPlainNumber(float& number) {
    constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    constexpr int largestPower = 22;
    constexpr std::ptrdiff_t mostDigits = 19;  // always fit into 64 bits
    constexpr std::uint64_t largestExact = std::uint64_t{1} << 53;

    const bool negative = *position == '-';
    const char* const first = negative || *position == '+' ? position + 1 : position;
    std::uint64_t digits = 0;
    std::ptrdiff_t exponent = 0;
    const char* p = ReadDigits(first, digits);
    std::ptrdiff_t count = p - first;
    if (*p == '.') {
        const char* const fraction = p + 1;
        p = ReadDigits(fraction, digits);
        exponent = fraction - p;
        count += p - fraction;
    }
    if (count == 0 || count > mostDigits) return false;
    if (*p == 'e' || *p == 'E') p = ReadExponent(p + 1, exponent);
    if (p == nullptr || (*p != '\0' && !IsSpace(*p))) return false;
    if (digits > largestExact || exponent < -largestPower || exponent > largestPower) return false;
    const auto whole = static_cast<double>(digits);
    const double value = exponent < 0 ? whole / powers[-exponent] : whole * powers[exponent];
    if (IsHalfway(value)) return false;
    number = static_cast<float>(negative ? -value : value);
    position = p;
    return true;
}

bool StlWords::readNumber(float& number) {
    while (IsSpace(*position)) ++position;
    if (readPlainNumber(number)) return true;
    const char* const start = position;
    // from_chars knows no plus sign; "+-1" stays wrong.
    const char* const first = *start == '+' && start[1] != '-' ? start + 1 : start;
    const auto [last, error] = std::from_chars(first, end, number);
    position = last;
    if (error == std::errc::invalid_argument || (*last != '\0' && !IsSpace(*last))) return false;
    if (error == std::errc{}) return true;
    number = 0.0f;
    return IsTiny({first, last});
}

void StlText::readFacet(StlWords& words) {
    Vec normal;
    for (;;) {
        const std::string_view word = words.next();
        if (word.starts_with("vertex")) {
            Pos vertex;
            if (!words.readThree(vertex)) throw std::runtime_error("Error in reading vertex");
            mesh.indices.push_back(static_cast<std::uint32_t>(mesh.vertices.size()));
            mesh.vertices.push_back(vertex);
            mesh.normals.push_back(normal);
        } else if (word == "normal") {
            if (!words.readThree(normal)) throw std::runtime_error("Error in reading normal");
        } else if (word == "endfacet") {
            return;
        } else if (word.empty()) {
            throw std::runtime_error("Bad STL File");
        }
    }
}

void StlText::read(const char* piece) {
    StlWords words(piece);
    for (std::string_view word = words.next(); !word.empty(); word = words.next()) {
        if (word == "facet") {
            const std::size_t before = words.left();
            readFacet(words);
            if (!anyFacet) ReserveAhead(mesh, before - words.left(), bytesExpected);
            mayOpen = false;
            mayClose = anyFacet = complete = true;
        } else if (mayOpen && word.starts_with("solid")) {
            words.skipLine();
            mayOpen = false;
            mayClose = true;
        } else if (mayClose && word == "endsolid") {
            words.skipLine();
            mayOpen = complete = true;
            mayClose = false;
        } else {
            throw std::runtime_error("Bad STL File");
        }
    }
}

void StlText::finish() const {
    if (!complete) throw std::runtime_error("Bad STL File");
}

std::size_t StlText::PieceLength(std::string_view text) {
    constexpr std::string_view mark = "endfacet";
    // A facet may begin on the line where the last one ended: only an "endfacet" that ends its line
    // will do.
    for (std::size_t at = text.rfind(mark); at != std::string_view::npos;
         at = at == 0 ? std::string_view::npos : text.rfind(mark, at - 1)) {
        if (at > 0 && !IsSpace(text[at - 1])) continue;
        std::size_t behind = at + mark.size();
        while (behind < text.size() && IsSpace(text[behind]) && !IsLineEnd(text[behind])) ++behind;
        if (behind < text.size() && IsLineEnd(text[behind])) return behind + 1;
    }
    return 0;
}

}  // namespace vrn::visual
