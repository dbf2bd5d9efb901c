#pragma once

#include <cstdint>

#include "suite/rob/VectorTypes.h"

namespace vrn::visual {

/// How the viewport starts. The host fills it and hands it to vrn::visual::Init; Scene keeps a copy
/// and changes it through its setters. Lengths are model units; the defaults suit millimetres.
struct SceneSettings {
    std::int32_t frameSize = 300;            ///< axis length of frames and of the world frame
    std::int32_t wobjFrameSize = 200;        ///< of the user and object frames of work objects
    std::int32_t robTargetFrameSize = 50;    ///< of robot targets
    std::int32_t jointTargetFrameSize = 50;  ///< of joint targets
    std::int32_t tcpFrameSize = 100;         ///< of tool centre points
    std::int32_t arrowSizeLevel = 5;  ///< of arrows on preview curves: their scale is a fifth of it
    rob::PosTemplate<float> targetPos{0, 0, 0};  ///< where the camera looks at first
    rob::PosTemplate<float> fromPos{3000, -3000,
                                    2500};  ///< where it stands first, for a Z-up world
    float nearClip = 10.0f;                 ///< near plane of the camera; above 0
    float farClip = 200000.0f;              ///< far plane and rendering distance of the camera
    float zoomMaxStep = 5000.0f;            ///< largest camera move of one zoom step
    float zoomMinDistance = 10.0f;          ///< nearest the camera may zoom to what it zooms at
    float zoomReserve = 0.0f;               ///< kept, read by nothing
    bool drawSegVisual = true;              ///< whether paths draw their segments
    bool drawPathArrow = false;             ///< whether paths draw arrows
    bool drawTargetZAxisOnly = false;       ///< whether targets show their Z axis alone
    bool drawTargetVisual = false;          ///< whether move instructions show their targets
    std::int32_t verticalDir = 2;           ///< the world axis that is up: 0 X, 1 Y, 2 Z
    float handleScale = 1.0f;               ///< scale of handles of constant screen size
};

}  // namespace vrn::visual
