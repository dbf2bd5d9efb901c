#include "suite/layout/Frame.h"

#include "suite/layout/Layout.h"

namespace vrn::layout {

Frame::Frame(std::string_view frameName) : SdfObject(sdf::ObjectType::Frame, frameName, "frame") {}

Frame::~Frame() { Layout::inst()->remove(*this); }

}  // namespace vrn::layout
