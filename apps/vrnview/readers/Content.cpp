#include "apps/vrnview/readers/Content.h"

#include <format>
#include <stdexcept>

#include "apps/vrnview/readers/ContentBuilder.h"
#include "apps/vrnview/readers/FileBytes.h"
#include "suite/sdf/SdfNode.h"

namespace vrn::host {

namespace {

enum class FileKind { Unknown, Bodies, Robot, Cloud, Station };

FileKind KindOf(const std::filesystem::path& file) {
    const std::string extension = LowerExtension(file);
    if (Lower(file.filename().string()).ends_with(".station.json")) return FileKind::Station;
    if (extension == ".stl" || IsCadExtension(extension)) return FileKind::Bodies;
    if (extension == ".urdf") return FileKind::Robot;
    if (extension == ".ply" || extension == ".pcd" || extension == ".xyz" || extension == ".pts")
        return FileKind::Cloud;
    return FileKind::Unknown;
}

}  // namespace

bool IsSupported(const std::filesystem::path& file) { return KindOf(file) != FileKind::Unknown; }

Content ReadContent(const std::filesystem::path& file) {
    Content content;
    ContentBuilder builder(content);
    const std::string name = file.stem().string();
    switch (KindOf(file)) {
        case FileKind::Bodies:
            builder.list(builder.model(file, name, {}));
            break;
        case FileKind::Robot: {
            RobotDescription description = ReadUrdf(ReadBytes(file));
            if (description.name.empty()) description.name = name;
            const std::string vendor = VendorOf(description.name, file);
            builder.robot(std::move(description), file, vendor, {}, "");
            break;
        }
        case FileKind::Cloud:
            builder.cloud(file, name, 1, {});
            break;
        case FileKind::Station:
            return ReadStation(ReadBytes(file), file);
        case FileKind::Unknown:
            RequireReadable(file);
            throw std::runtime_error(
                std::format("unsupported file type (supported: {})", supportedFiles));
    }
    return content;
}

}  // namespace vrn::host
