#include "suite/rob/VectorTypes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace {

using namespace vrn::rob;
using Vec = Vec3Template<double>;

// Other libraries hand these to engines as plain numbers: the order in memory is fixed.
template <template <class> class Type>
constexpr bool isThreeInOrder = offsetof(Type<float>, x) == 0 && offsetof(Type<float>, y) == 4 &&
                                offsetof(Type<float>, z) == 8 && sizeof(Type<float>) == 12 &&
                                std::is_trivially_copyable_v<Type<float>>;
static_assert(isThreeInOrder<PosTemplate>);
static_assert(isThreeInOrder<DirTemplate>);
static_assert(isThreeInOrder<Vec3Template>);
static_assert(isThreeInOrder<XYZTemplate>);
static_assert(offsetof(Vec2Template<float>, y) == 4 && sizeof(Vec2Template<float>) == 8);
static_assert(offsetof(ColorTemplate<float>, g) == 4 && offsetof(ColorTemplate<float>, b) == 8);
static_assert(sizeof(ColorTemplate<float>) == 12);  // no alpha in it

std::string NormalizeError(const Vec& v) {
    try {
        (void)v.normalized();
    } catch (const std::overflow_error& e) {
        return e.what();
    }
    return "none";
}

TEST(Vec3Template, ShortVectorsAreNotNormalised) {
    const std::string text = "0-length vector cannot be normalized.";
    EXPECT_EQ(NormalizeError({0, 0, 0}), text);
    EXPECT_EQ(NormalizeError({1e-7, 0, 0}), text);  // at the limit still too short
    EXPECT_EQ(NormalizeError({std::numeric_limits<double>::quiet_NaN(), 0, 0}), text);
    EXPECT_EQ(NormalizeError({1.01e-7, 0, 0}), "none");
}

TEST(Vec3Template, NormalisedVectorKeepsItsDirection) {
    EXPECT_EQ((Vec{0, 0, -5}.normalized()), (Vec{0, 0, -1}));
    EXPECT_NEAR((Vec{3, -4, 12}.normalized().length()), 1, 1e-15);
}

TEST(Vec3Template, AVectorWhoseSquareIsTooLargeForANumberHasADirectionToo) {
    const auto unit = vrn::rob::Vec3Template<float>{3e20f, -4e20f, 0}.normalized();
    EXPECT_FLOAT_EQ(unit.x, 0.6f);
    EXPECT_FLOAT_EQ(unit.y, -0.8f);
    EXPECT_DOUBLE_EQ((Vec{0, 1e300, 0}.normalized().y), 1);
}

TEST(Vec3Template, CrossProductIsRightHanded) {
    EXPECT_EQ((Vec{1, 0, 0}.cross(Vec{0, 1, 0})), (Vec{0, 0, 1}));
    EXPECT_EQ((Vec{0, 1, 0}.cross(Vec{1, 0, 0})), (Vec{0, 0, -1}));
}

TEST(Vec3Template, NarrowingRoundsEachComponent) {
    const Vec3Template<float> narrow(Vec{0.1, 1e10, -1e-50});
    EXPECT_EQ(narrow.x, 0.1f);
    EXPECT_EQ(narrow.y, 1e10f);
    EXPECT_EQ(narrow.z, 0.0f);
}

TEST(PosTemplate, DifferenceOfPointsIsTheVectorBetweenThem) {
    const PosTemplate<double> a{1, 2, 3}, b{4, 6, 8};
    EXPECT_EQ(b - a, (Vec{3, 4, 5}));
    EXPECT_EQ(a + (b - a), b);
    EXPECT_EQ(b - (b - a), a);
}

}  // namespace
