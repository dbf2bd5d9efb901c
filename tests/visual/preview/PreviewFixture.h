#pragma once

#include <algorithm>
#include <string>
#include <unordered_set>
#include <vector>

#include "tests/support/SolidFixture.h"
#include "visual/Visual.h"

namespace vrn::test {

/// Tests on what hangs under the scene's root for a while.
class PreviewTest : public SolidTest {
protected:
    void SetUp() override {
        SolidTest::SetUp();
        for (visual::Visual* child : scene().root->getChildren()) before.insert(child);
    }
    void TearDown() override {
        scene().removePreviewCurves();
        scene().removePreviewedPoints();
        scene().removePreviewFaces();
        scene().removePreviewedJointVisual();
        scene().deleteCopiedVisual();
        scene().removeDimensionVisual();
        scene().removePolylines();
        scene().deleteUVIndicatorVisual();
        pump();
        SolidTest::TearDown();
    }

    /// What hangs there that did not before the test, but for `known`.
    [[nodiscard]] std::vector<visual::Visual*> added() const {
        std::vector<visual::Visual*> result = scene().root->getChildren();
        std::erase_if(
            result, [this](visual::Visual* v) { return before.contains(v) || known.contains(v); });
        return result;
    }
    /// Of that kind.
    template <class VisualClass>
    [[nodiscard]] std::vector<VisualClass*> addedOf() const {
        std::vector<VisualClass*> result;
        for (visual::Visual* v : added())
            if (auto* wanted = dynamic_cast<VisualClass*>(v)) result.push_back(wanted);
        return result;
    }
    /// A box part at (1000, 0, 0), which does not count as added.
    visual::Visual* showCarrier() {
        visual::Visual* part = showBoxPart("carrier", {{1000, 0, 0}, {}});
        known.insert(part);
        return part;
    }

    std::unordered_set<visual::Visual*> before, known;
};

}  // namespace vrn::test
