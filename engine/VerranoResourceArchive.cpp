#include "engine/VerranoResourceArchive.h"

#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <type_traits>

#include <minizip/unzip.h>

#include <OgreDataStream.h>
#include <OgreStringVector.h>

#include "suite/common/Files.h"
#include "suite/common/Resources.h"
#include "suite/common/ZipManager.h"

namespace vrn::visual {

namespace {

constexpr std::string_view scheme = "resource://";

struct Entry {
    std::string name;  // relative to the location
    std::size_t compressedSize;
    std::size_t uncompressedSize;
};

struct Closer {
    void operator()(void* file) const { unzClose(file); }
};
using ZipFile = std::unique_ptr<std::remove_pointer_t<unzFile>, Closer>;

Entry CurrentEntry(unzFile zip) {
    unz_file_info info{};
    if (unzGetCurrentFileInfo(zip, &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK)
        throw std::runtime_error("Get current file info failed");
    std::string name(info.size_filename, '\0');
    // One more for the terminator that minizip writes.
    if (unzGetCurrentFileInfo(zip, &info, name.data(), info.size_filename + 1, nullptr, 0, nullptr,
                              0) != UNZ_OK)
        throw std::runtime_error("Get current file info failed");
    return {std::move(name), info.compressed_size, info.uncompressed_size};
}

// Calls `callback` with each file of the package that lies below the folder that `uri` names.
template <class Callback>
void ForEachFile(const std::string& uri, Callback callback) {
    const std::size_t separator = uri.find("://");
    const std::string folder =
        (separator == std::string::npos ? uri : uri.substr(separator + 3)) + "/";

    const std::filesystem::path package = common::GetResourcePath();
    // A path that cannot even be looked at answers none; the other form would throw.
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(package, ignored);
    if (status.type() == std::filesystem::file_type::not_found ||
        status.type() == std::filesystem::file_type::none)
        return;
    const ZipFile zip(unzOpen64(package.c_str()));
    if (!zip) return;

    for (int state = unzGoToFirstFile(zip.get()); state == UNZ_OK;
         state = unzGoToNextFile(zip.get())) {
        Entry entry = CurrentEntry(zip.get());
        if (!entry.name.starts_with(folder) || entry.name.ends_with('/')) continue;
        entry.name.erase(0, folder.size());
        callback(entry);
    }
}

Ogre::FileInfo ToFileInfo(const Ogre::Archive* archive, const Entry& entry) {
    Ogre::FileInfo info;
    info.archive = archive;
    info.filename = entry.name;
    Ogre::StringUtil::splitFilename(entry.name, info.basename, info.path);
    info.compressedSize = entry.compressedSize;
    info.uncompressedSize = entry.uncompressedSize;
    return info;
}

}  // namespace

VerranoResourceArchive::VerranoResourceArchive(const Ogre::String& location,
                                               const Ogre::String& archiveType)
    : Ogre::Archive(location, archiveType) {}

bool VerranoResourceArchive::isCaseSensitive() const { return true; }
void VerranoResourceArchive::load() {}
void VerranoResourceArchive::unload() {}
bool VerranoResourceArchive::isReadOnly() const { return true; }

std::string VerranoResourceArchive::convertToFull(const std::string& fileName) const {
    if (fileName.size() > 10 && fileName.starts_with(scheme)) return fileName;
    return mName + "/" + fileName;
}

Ogre::DataStreamPtr VerranoResourceArchive::open(const Ogre::String& fileName, bool) const {
    const std::string bytes = ReadFileFromURI(convertToFull(fileName));
    auto stream = std::make_shared<Ogre::MemoryDataStream>(fileName, bytes.size(),
                                                           /*freeOnClose=*/true, /*readOnly=*/true);
    if (!bytes.empty()) std::memcpy(stream->getPtr(), bytes.data(), bytes.size());
    return stream;
}

Ogre::DataStreamPtr VerranoResourceArchive::create(const Ogre::String&) { return {}; }

void VerranoResourceArchive::remove(const Ogre::String&) {}

Ogre::StringVectorPtr VerranoResourceArchive::list(bool, bool) const {
    return std::make_shared<Ogre::StringVector>();
}

template <class Visit>
void VerranoResourceArchive::forEachMatch(const Ogre::String& pattern, bool recursive, bool dirs,
                                          Visit visit) const {
    if (dirs) return;
    ForEachFile(mName, [&](const Entry& entry) {
        if (!recursive && entry.name.find('/') != std::string::npos) return;
        if (Ogre::StringUtil::match(convertToFull(entry.name), pattern, /*caseSensitive=*/true))
            visit(entry);
    });
}

Ogre::FileInfoListPtr VerranoResourceArchive::listFileInfo(bool recursive, bool dirs) const {
    return findFileInfo("*", recursive, dirs);
}

Ogre::StringVectorPtr VerranoResourceArchive::find(const Ogre::String& pattern, bool recursive,
                                                   bool dirs) const {
    auto names = std::make_shared<Ogre::StringVector>();
    forEachMatch(pattern, recursive, dirs,
                 [&](const Entry& entry) { names->push_back(entry.name); });
    return names;
}

bool VerranoResourceArchive::exists(const Ogre::String& fileName) const {
    return common::ZipManager::Exists(convertToFull(fileName));
}

time_t VerranoResourceArchive::getModifiedTime(const Ogre::String&) const { return 0; }

Ogre::FileInfoListPtr VerranoResourceArchive::findFileInfo(const Ogre::String& pattern,
                                                           bool recursive, bool dirs) const {
    auto infos = std::make_shared<Ogre::FileInfoList>();
    forEachMatch(pattern, recursive, dirs,
                 [&](const Entry& entry) { infos->push_back(ToFileInfo(this, entry)); });
    return infos;
}

VerranoResourceArchiveFactory::~VerranoResourceArchiveFactory() = default;

const Ogre::String& VerranoResourceArchiveFactory::getType() const {
    static const Ogre::String type = "VerranoResource";
    return type;
}

Ogre::Archive* VerranoResourceArchiveFactory::createInstance(const Ogre::String& location,
                                                             bool readOnly) {
    return readOnly ? new VerranoResourceArchive(location, getType()) : nullptr;
}

void VerranoResourceArchiveFactory::destroyInstance(Ogre::Archive* archive) { delete archive; }

}  // namespace vrn::visual
