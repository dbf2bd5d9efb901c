#pragma once

namespace vrn::visual {

/// Gives Ogre's built-in materials "BaseWhite" and "BaseWhiteNoLighting" a program of their own, so
/// that an object without any other material draws plain white. Without one the first frame that
/// draws it throws, and a missing resource package would end every frame. Call after the resources
/// are initialised; a second call does nothing. Thread: render.
void MakeFallbackMaterialsDrawable();

}  // namespace vrn::visual
