#pragma once

#include <string>
#include <vector>

#include "visual/Visual.h"

namespace vrn::test {

/// A visual that notes which of its virtual operations ran, and counts as one of everything.
class ProbeVisual : public visual::Visual {
public:
    using Visual::Visual;

    void setVisible(bool show, bool cascade) override {
        calls.push_back(std::string("setVisible ") + (show ? "true" : "false") +
                        (cascade ? " cascade" : " alone"));
        parentFlagSeen = getParent() && getParent()->visible;
        Visual::setVisible(show, cascade);
    }
    void resetAppearance() override {
        calls.push_back("resetAppearance");
        Visual::resetAppearance();
    }
    void setSelected() override {
        calls.push_back("setSelected");
        Visual::setSelected();
    }
    void setHighlighted() override {
        calls.push_back("setHighlighted");
        Visual::setHighlighted();
    }
    void clearHighlightOrSelect() override {
        calls.push_back("clearHighlightOrSelect");
        Visual::clearHighlightOrSelect();
    }
    void useMaterial(const std::string& name) override {
        calls.push_back("useMaterial " + name);
        Visual::useMaterial(name);
    }
    std::uint32_t getBodiesNum() override { return 1 + Visual::getBodiesNum(); }
    std::uint32_t getFacesNum() override { return 10 + Visual::getFacesNum(); }
    std::uint32_t getTrianglesNum() override { return 100 + Visual::getTrianglesNum(); }
    std::uint32_t getVerticesNum() override { return 1000 + Visual::getVerticesNum(); }

    std::vector<std::string> calls;
    bool parentFlagSeen = false;  ///< what the parent's `visible` was when setVisible last came
};

}  // namespace vrn::test
