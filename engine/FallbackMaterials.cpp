#include "engine/FallbackMaterials.h"

#include <OgreHighLevelGpuProgramManager.h>
#include <OgreMaterialManager.h>
#include <OgrePass.h>
#include <OgreTechnique.h>

namespace vrn::visual {

namespace {

constexpr const char* vertexProgramName = "VrnFallbackVertex";
constexpr const char* fragmentProgramName = "VrnFallbackFragment";

constexpr const char* vertexSource = R"(#version 330 core
in vec4 vertex;
uniform mat4 worldViewProj;
void main() { gl_Position = worldViewProj * vertex; }
)";

constexpr const char* fragmentSource = R"(#version 330 core
out vec4 colour;
void main() { colour = vec4(1.0); }
)";

Ogre::GpuProgramPtr MakeProgram(const char* name, Ogre::GpuProgramType type, const char* source) {
    const Ogre::GpuProgramPtr program =
        Ogre::HighLevelGpuProgramManager::getSingleton().createProgram(name, Ogre::RGN_INTERNAL,
                                                                       "glsl", type);
    program->setSource(source);
    return program;
}

}  // namespace

void MakeFallbackMaterialsDrawable() {
    if (Ogre::HighLevelGpuProgramManager::getSingleton().getByName(vertexProgramName,
                                                                   Ogre::RGN_INTERNAL))
        return;
    const Ogre::GpuProgramPtr vertex =
        MakeProgram(vertexProgramName, Ogre::GPT_VERTEX_PROGRAM, vertexSource);
    vertex->getDefaultParameters()->setNamedAutoConstant(
        "worldViewProj", Ogre::GpuProgramParameters::ACT_WORLDVIEWPROJ_MATRIX);
    MakeProgram(fragmentProgramName, Ogre::GPT_FRAGMENT_PROGRAM, fragmentSource);

    for (const char* name : {"BaseWhite", "BaseWhiteNoLighting"}) {
        const Ogre::MaterialPtr material =
            Ogre::MaterialManager::getSingleton().getByName(name, Ogre::RGN_INTERNAL);
        Ogre::Pass* pass = material->getTechnique(0)->getPass(0);
        pass->setVertexProgram(vertexProgramName);
        pass->setFragmentProgram(fragmentProgramName);
        pass->setCullingMode(Ogre::CULL_NONE);
    }
}

}  // namespace vrn::visual
