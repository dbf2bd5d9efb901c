#include "mesh/Letters.h"

#include <cmath>
#include <locale>
#include <numbers>
#include <sstream>
#include <utility>
#include <vector>

namespace vrn::visual {

namespace {

constexpr double unit = 0.01;  // the designs are drawn in hundredths of a capital's height
constexpr double halfStroke = 6;
constexpr double dotRadius = 8;
constexpr int dotCorners = 7;
constexpr double arcStep = 12;  // degrees between points on a curve, at most

/// A character as its pen draws it: centre lines in hundredths, y up, the baseline at 0, capitals
/// to 100.
///
/// M x y            starts a stroke
/// L x y            straight on to a point
/// C x y rx ry a b  starts a stroke along an ellipse about x, y, from a to b degrees
/// A x y rx ry a b  straight on to such an arc, and along it
/// O x y rx ry      a whole ellipse
/// D x y            a dot
/// m, l             as M and L, and cuts this end of the stroke vertically
struct Design {
    double advance;
    const char* path;
};

constexpr std::array<Design, 94> designs{{
    /* ! */ {43.85, "M 21.925 100 L 21.925 30 D 21.925 8"},
    /* " */ {48, "M 14 100 L 14 70 M 34 100 L 34 70"},
    /* # */ {76, "M 20 2 L 30 98 M 45 2 L 55 98 M 8 66 L 70 66 M 5 34 L 67 34"},
    /* $ */ {76, "C 38 72 26 22 40 270 A 38 28 28 22 90 -140 M 38 -10 L 38 110"},
    /* % */ {96, "O 22 74 14 20 O 74 26 14 20 M 26 0 L 70 100"},
    /* & */ {80, "M 72 0 A 36 77 17 17 220 -45 A 32 29 24 23 130 330 L 69 48"},
    /* ' */ {28, "M 14 100 L 14 70"},
    /* ( */ {42, "C 60 46 44 80 128 232"},
    /* ) */ {42, "C -18 46 44 80 52 -52"},
    /* * */ {56, "M 28 54 L 28 98 M 9 65 L 47 87 M 9 87 L 47 65"},
    /* + */ {76, "M 10 45 L 66 45 M 38 17 L 38 73"},
    /* , */ {34, "M 20 14 L 11 -16"},
    /* - */ {54, "M 8 40 L 46 40"},
    /* . */ {34, "D 17 8"},
    /* / */ {52, "M 8 -8 L 44 106"},
    /* 0 */ {68, "O 34 50 24 44"},
    /* 1 */ {68, "M 40 0 L 40 100 M 16 78 l 40 92"},
    /* 2 */ {68, "C 34 70 22 24 160 -40 L 18 6 L 58 6"},
    /* 3 */ {68, "C 32 73 21 21 150 -90 L 24 52 M 24 52 L 31 52 A 31 29 24 23 90 -150"},
    /* 4 */ {68, "M 47 0 L 47 100 M 12 27 L 64 27 M 12.5 21 L 46.5 100"},
    /* 5 */ {68, "M 56 94 L 18 94 L 15 47 C 32 33 24 27 132 -148"},
    /* 6 */ {68, "O 35 31 23 25 C 52 33 40 62 180 100"},
    /* 7 */ {68, "M 8 94 L 60 94 M 26 0 L 53.8 100"},
    /* 8 */ {68, "O 34 74 19 20 O 34 29 23 23"},
    /* 9 */ {68, "O 33 69 23 25 C 16 67 40 62 0 -80"},
    /* : */ {34, "D 17 8 D 17 60"},
    /* ; */ {34, "M 20 14 L 11 -16 D 18 60"},
    /* < */ {76, "M 64 74 L 16 45 L 64 16"},
    /* = */ {76, "M 10 58 L 66 58 M 10 32 L 66 32"},
    /* > */ {76, "M 12 74 L 60 45 L 12 16"},
    /* ? */ {62, "C 30 72 20 22 165 -50 L 31 40 L 31 30 D 31 8"},
    /* @ */ {104, "O 52 40 17 20 M 69 62 L 69 34 A 79.5 34 10.5 12 180 360 A 52 40 38 48 0 300"},
    /* A */ {76, "M 9 0 L 38 100 M 67 0 L 38 100 M 19 30 L 57 30"},
    /* B */
    {78,
     "M 16 0 L 16 100 M 16 94 L 40 94 A 40 73.5 20.5 20.5 90 -90 L 16 53 "
     "M 16 53 L 43 53 A 43 29.5 23.5 23.5 90 -90 L 16 6"},
    /* C */ {78, "C 46 50 34 44 50 310"},
    /* D */ {82, "M 16 0 L 16 100 M 16 94 L 36 94 A 36 50 34 44 90 -90 L 16 6"},
    /* E */ {66, "M 60 94 L 16 94 L 16 6 L 60 6 M 16 51 L 55 51"},
    /* F */ {63, "M 60 94 L 16 94 L 16 0 M 16 50 L 54 50"},
    /* G */ {88, "C 45 50 33 44 48 360 L 50 50"},
    /* H */ {80, "M 16 0 L 16 100 M 64 0 L 64 100 M 16 51 L 64 51"},
    /* I */ {32, "M 16 0 L 16 100"},
    /* J */ {62, "M 46 100 L 46 26 A 27 26 19 20 0 -155"},
    /* K */ {73, "M 16 0 L 16 100 M 61 100 l 16 44 M 64 0 L 31 62"},
    /* L */ {62, "M 16 100 L 16 6 L 58 6"},
    /* M */ {96, "M 16 0 L 16 100 M 80 0 L 80 100 M 16.5 100 L 48 22 M 79.5 100 L 48 22"},
    /* N */ {82, "M 16 0 L 16 100 M 66 0 L 66 100 M 16.7 100 L 65.3 0"},
    /* O */ {94, "O 47 50 35 44"},
    /* P */ {74, "M 16 0 L 16 100 M 16 94 L 40 94 A 40 69 25 25 90 -90 L 16 44"},
    /* Q */ {94, "O 47 50 35 44 M 56 28 L 84 -6"},
    /* R */ {74, "M 16 0 L 16 100 M 16 94 L 40 94 A 40 70 24 24 90 -90 L 16 46 M 40 46 L 65 0"},
    /* S */ {76, "C 38 72 26 22 40 270 A 38 28 28 22 90 -140"},
    /* T */ {72, "M 4 94 L 68 94 M 36 0 L 36 94"},
    /* U */ {86, "M 16 100 L 16 36 A 43 36 27 30 180 360 L 70 100"},
    /* V */ {76, "M 9 100 L 38 0 M 67 100 L 38 0"},
    /* W */ {106, "M 9 100 L 31 0 M 53 100 L 31 0 M 53 100 L 75 0 M 97 100 L 75 0"},
    /* X */ {72, "M 10 0 L 62 100 M 62 0 L 10 100"},
    /* Y */ {72, "M 9 100 L 36 44 M 63 100 L 36 44 M 36 0 L 36 50"},
    /* Z */ {72, "M 8 94 L 64 94 M 8 6 L 64 6 M 14.7 0 L 57.3 100"},
    /* [ */ {42, "M 34 106 L 16 106 L 16 -14 L 34 -14"},
    /* \ */ {52, "M 8 106 L 44 -8"},
    /* ] */ {42, "M 8 106 L 26 106 L 26 -14 L 8 -14"},
    /* ^ */ {68, "M 12 62 L 34 100 M 56 62 L 34 100"},
    /* _ */ {64, "M 2 -14 L 62 -14"},
    /* ` */ {40, "M 12 104 L 26 84"},
    /* a */
    {70,
     "M 54 0 L 54 44 A 32 44 22 22 0 150 M 54 40 L 29 40 A 29 23 17 17 90 270 L 34 6 "
     "A 34 26 20 20 270 360"},
    /* b */ {76, "M 16 0 L 16 102 O 40 36 24 30"},
    /* c */ {66, "C 37 36 25 30 50 310"},
    /* d */ {76, "M 60 0 L 60 102 O 36 36 24 30"},
    /* e */ {72, "M 13 36 L 61 36 C 37 36 24 30 -11 315"},
    /* f */ {46, "M 21 0 L 21 78 A 39 78 18 18 180 75 M 5 66 L 42 66"},
    /* g */ {76, "O 36 36 24 30 M 60 72 L 60 -2 A 37 -2 23 20 0 -150"},
    /* h */ {76, "M 16 0 L 16 102 M 16 42 A 38 42 22 24 180 0 L 60 0"},
    /* i */ {32, "M 16 0 L 16 72 D 16 92"},
    /* j */ {34, "M 18 72 L 18 -8 A 2 -8 16 14 0 -80 D 18 92"},
    /* k */ {64, "M 16 0 L 16 102 M 52 72 l 16 32 M 55 0 L 28 44"},
    /* l */ {32, "M 16 0 L 16 102"},
    /* m */
    {104, "M 16 0 L 16 72 M 16 44 A 34 44 18 22 180 0 L 52 0 M 52 44 A 70 44 18 22 180 0 L 88 0"},
    /* n */ {76, "M 16 0 L 16 72 M 16 42 A 38 42 22 24 180 0 L 60 0"},
    /* o */ {76, "O 38 36 26 30"},
    /* p */ {76, "M 16 -28 L 16 72 O 40 36 24 30"},
    /* q */ {76, "M 60 -28 L 60 72 O 36 36 24 30"},
    /* r */ {48, "M 16 0 L 16 72 M 16 40 A 38 40 22 26 180 75"},
    /* s */ {66, "C 33 52 20 14 35 270 A 33 22 22 16 90 -145"},
    /* t */ {50, "M 22 94 L 22 24 A 40 24 18 18 180 285 M 6 66 L 44 66"},
    /* u */ {76, "M 16 72 L 16 30 A 38 30 22 24 180 360 M 60 0 L 60 72"},
    /* v */ {60, "M 8 72 L 30 0 M 52 72 L 30 0"},
    /* w */ {88, "M 8 72 L 26 0 M 44 72 L 26 0 M 44 72 L 62 0 M 80 72 L 62 0"},
    /* x */ {60, "M 9 0 L 51 72 M 51 0 L 9 72"},
    /* y */ {61, "M 8 72 L 31 0 M 53 72 L 22.4 -28"},
    /* z */ {60, "M 8 66 L 52 66 M 8 6 L 52 6 M 14.5 0 L 45.5 72"},
    /* { */
    {46,
     "M 40 106 L 34 106 A 34 90 14 16 90 180 L 20 60 A 8 60 12 14 0 -90 "
     "M 8 46 A 8 32 12 14 90 0 L 20 2 A 34 2 14 16 180 270 L 40 -14"},
    /* | */ {32, "M 16 112 L 16 -22"},
    /* } */
    {46,
     "M 6 106 L 12 106 A 12 90 14 16 90 0 L 26 60 A 38 60 12 14 180 270 "
     "M 38 46 A 38 32 12 14 90 180 L 26 2 A 12 2 14 16 0 -90 L 6 -14"},
    /* ~ */ {76, "C 24 40 14 12 200 50 A 52 50 14 12 230 380"},
}};

struct Point {
    double x, y;
};

Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
Point operator*(Point a, double s) { return {a.x * s, a.y * s}; }
double Dot(Point a, Point b) { return a.x * b.x + a.y * b.y; }
double Length(Point a) { return std::hypot(a.x, a.y); }
Point Unit(Point a) { return a * (1 / Length(a)); }
/// A quarter turn to the left.
Point Left(Point a) { return {-a.y, a.x}; }

/// How the end of a stroke is cut.
enum class Cut { straight, square, vertical };

struct Stroke {
    std::vector<Point> points;
    bool closed = false;
    Cut first = Cut::straight, last = Cut::straight;
};

/// From the centre line to the left edge at an end whose stroke goes in direction `d`, of length 1.
Point EndOffset(Point d, Cut cut) {
    if (cut == Cut::vertical) return Point{0, 1} * (halfStroke / d.x);
    // Straight strokes that are steep end level with the line of text, as a broad pen would cut
    // them.
    constexpr double steep = 0.6;
    if (cut == Cut::straight && std::abs(d.y) > steep) return Point{-1, 0} * (halfStroke / d.y);
    return Left(d) * halfStroke;
}

/// From the centre line to the left edge where a stroke turns from direction `d` to `e`: a mitre.
Point JoinOffset(Point d, Point e) {
    const Point middle = Unit(Left(d) + Left(e));
    return middle * (halfStroke / Dot(middle, Left(d)));
}

struct Glyph {
    std::vector<float> vertices;
    std::vector<std::uint32_t> indices;

    std::uint32_t add(Point p) {
        vertices.push_back(static_cast<float>(p.x * unit));
        vertices.push_back(static_cast<float>(p.y * unit));
        return static_cast<std::uint32_t>(vertices.size() / 2 - 1);
    }
};

/// Two vertices for each point of the centre line, right edge then left, and two triangles a piece.
void AddStroke(Glyph& glyph, const Stroke& stroke) {
    const std::vector<Point>& p = stroke.points;
    const std::size_t n = p.size();
    const auto direction = [&](std::size_t i) { return Unit(p[(i + 1) % n] - p[i % n]); };
    const auto offset = [&](std::size_t i) {
        if (stroke.closed) return JoinOffset(direction(i + n - 1), direction(i));
        if (i == 0) return EndOffset(direction(0), stroke.first);
        if (i == n - 1) return EndOffset(direction(n - 2), stroke.last);
        return JoinOffset(direction(i - 1), direction(i));
    };
    const auto start = static_cast<std::uint32_t>(glyph.vertices.size() / 2);
    for (std::size_t i = 0; i < n; ++i) {
        glyph.add(p[i] - offset(i));
        glyph.add(p[i] + offset(i));
    }
    const auto pieces = static_cast<std::uint32_t>(stroke.closed ? n : n - 1);
    for (std::uint32_t i = 0; i < pieces; ++i) {
        const std::uint32_t here = start + 2 * i;
        const std::uint32_t next = start + 2 * ((i + 1) % static_cast<std::uint32_t>(n));
        for (const std::uint32_t index : {here, next, next + 1, here, next + 1, here + 1})
            glyph.indices.push_back(index);
    }
}

void AddDot(Glyph& glyph, Point center) {
    std::uint32_t first = 0;
    for (int i = 0; i < dotCorners; ++i) {
        const double angle = std::numbers::pi * (0.5 + 2.0 * i / dotCorners);
        const std::uint32_t corner =
            glyph.add(center + Point{std::cos(angle), std::sin(angle)} * dotRadius);
        if (i == 0) first = corner;
        if (i < 2) continue;
        for (const std::uint32_t index : {first, corner - 1, corner})
            glyph.indices.push_back(index);
    }
}

/// Follows a design's path and lays down strokes and dots.
class Pen {
public:
    Glyph draw(const char* path) {
        std::istringstream in(path);
        in.imbue(std::locale::classic());  // a decimal point, whatever the host's locale
        for (char command = 0; in >> command;) obey(command, in);
        finishStroke();
        return std::move(glyph);
    }

private:
    void obey(char command, std::istringstream& in) {
        Point at{};
        in >> at.x >> at.y;
        if (command == 'L' || command == 'l') {
            lineTo(at, command == 'l' ? Cut::vertical : Cut::straight);
            return;
        }
        if (command != 'A') finishStroke();
        if (command == 'M' || command == 'm') {
            stroke.points.push_back(at);
            stroke.first = command == 'm' ? Cut::vertical : Cut::straight;
        } else if (command == 'D') {
            AddDot(glyph, at);
        } else {
            Point radius{};
            double from = 0, to = 360;
            in >> radius.x >> radius.y;
            if (command != 'O') in >> from >> to;
            if (command == 'C') stroke.first = Cut::square;
            arc(at, radius, from, to);
            stroke.closed = command == 'O';
        }
    }

    void lineTo(Point p, Cut cut) {
        stroke.last = cut;
        // An arc that begins where the stroke is adds no second point there: it would have no
        // direction.
        constexpr double tooClose = 0.01;
        if (!stroke.points.empty() && Length(p - stroke.points.back()) < tooClose) return;
        stroke.points.push_back(p);
    }

    void arc(Point center, Point radius, double from, double to) {
        const int pieces = static_cast<int>(std::ceil(std::abs(to - from) / arcStep));
        for (int i = 0; i <= pieces; ++i) {
            const double angle = (from + (to - from) * i / pieces) * std::numbers::pi / 180;
            lineTo(center + Point{radius.x * std::cos(angle), radius.y * std::sin(angle)},
                   Cut::square);
        }
    }

    void finishStroke() {
        if (stroke.closed) stroke.points.pop_back();  // the ellipse came back to its start
        if (!stroke.points.empty()) AddStroke(glyph, stroke);
        stroke = {};
    }

    Glyph glyph;
    Stroke stroke;
};

/// The drawn characters, and the records that point into them.
struct Table {
    std::array<Glyph, designs.size()> glyphs;
    std::array<Letter, designs.size()> letters;

    Table() {
        for (std::size_t i = 0; i < designs.size(); ++i) {
            glyphs[i] = Pen().draw(designs[i].path);
            letters[i] = {glyphs[i].vertices.data(), glyphs[i].indices.data(),
                          static_cast<float>(designs[i].advance * unit),
                          static_cast<std::int32_t>(glyphs[i].vertices.size() / 2),
                          static_cast<std::int32_t>(glyphs[i].indices.size() / 3)};
        }
    }
};

}  // namespace

const std::array<Letter, 94>& Letters() {
    static const Table table;
    return table.letters;
}

const Letter* FindLetter(char c) {
    return c >= '!' && c <= '~' ? &Letters()[static_cast<std::size_t>(c - '!')] : nullptr;
}

}  // namespace vrn::visual
