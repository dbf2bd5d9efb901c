#pragma once

#include "suite/rob/VectorTypes.h"

namespace vrn::host {

/// An axis-aligned box in world coordinates; empty until something is added.
class Bounds {
public:
    Bounds() = default;
    /// Of two opposite corners. A coordinate that is not finite leaves the box empty.
    Bounds(const rob::PosTemplate<double>& a, const rob::PosTemplate<double>& b);

    [[nodiscard]] bool isEmpty() const { return empty; }
    /// Both are zero while the box is empty.
    [[nodiscard]] const rob::PosTemplate<double>& getMin() const { return low; }
    [[nodiscard]] const rob::PosTemplate<double>& getMax() const { return high; }
    [[nodiscard]] rob::PosTemplate<double> getCentre() const;
    /// Half the diagonal.
    [[nodiscard]] double getRadius() const;

    /// Grows to hold `point`. A point with a coordinate that is not finite is passed over.
    void add(const rob::PosTemplate<double>& point);
    void add(const Bounds& other);

private:
    bool empty = true;
    rob::PosTemplate<double> low{}, high{};
};

}  // namespace vrn::host
