#pragma once

#include <string>

#include <OgreArchive.h>
#include <OgreArchiveFactory.h>

#include "visual/VrnVisualApi.h"

namespace vrn::visual {

/// A folder of the suite's resource package as an Ogre archive. Its names are "resource://" URIs;
/// names without that scheme are relative to the archive's location ("resource://material").
///
/// Read-only. Files are found by find and findFileInfo, which match the pattern against the full
/// URI and answer names relative to the location; a missing package is an empty archive. Each
/// search opens the package anew, which happens only during start-up. Thread: render.
class VRN_VISUAL_API VerranoResourceArchive : public Ogre::Archive {
public:
    VerranoResourceArchive(const Ogre::String& location, const Ogre::String& archiveType);

    bool isCaseSensitive() const override;
    void load() override;
    void unload() override;
    bool isReadOnly() const override;
    /// Throws std::runtime_error, naming the URI, for a file that cannot be read.
    Ogre::DataStreamPtr open(const Ogre::String& fileName, bool readOnly) const override;
    /// An empty pointer: nothing can be created.
    Ogre::DataStreamPtr create(const Ogre::String& fileName) override;
    /// Does nothing.
    void remove(const Ogre::String& fileName) override;
    /// Always empty: the engine searches through find and findFileInfo.
    Ogre::StringVectorPtr list(bool recursive, bool dirs) const override;
    Ogre::FileInfoListPtr listFileInfo(bool recursive, bool dirs) const override;
    /// Without `recursive` only files directly in the location; with `dirs` nothing, since the
    /// package knows no folders. Never null.
    Ogre::StringVectorPtr find(const Ogre::String& pattern, bool recursive,
                               bool dirs) const override;
    bool exists(const Ogre::String& fileName) const override;
    /// Always 0.
    time_t getModifiedTime(const Ogre::String& fileName) const override;
    Ogre::FileInfoListPtr findFileInfo(const Ogre::String& pattern, bool recursive,
                                       bool dirs) const override;

private:
    [[nodiscard]] std::string convertToFull(const std::string& fileName) const;
    template <class Visit>
    void forEachMatch(const Ogre::String& pattern, bool recursive, bool dirs, Visit visit) const;
};

/// Makes archives of the type "VerranoResource". Thread: render.
class VRN_VISUAL_API VerranoResourceArchiveFactory : public Ogre::ArchiveFactory {
public:
    ~VerranoResourceArchiveFactory() override;
    const Ogre::String& getType() const override;
    using Ogre::ArchiveFactory::createInstance;
    void destroyInstance(Ogre::Archive* archive) override;
    /// Null unless `readOnly`: the package cannot be written.
    Ogre::Archive* createInstance(const Ogre::String& location, bool readOnly) override;
};

}  // namespace vrn::visual
