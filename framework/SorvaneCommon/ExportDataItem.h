// One page to export.
#pragma once

#include "SorvaneBase/StringTypes.h"
#include "bxbase/ReferencedObject.h"

#include <string>

class ExportFolder;
class SorvaneException;

/// A page of the host's, shared by reference count between the host and every engine that was given it.
///
/// The reference count is reached through a virtual base, so the slots below count the item's own table only.
/// The slots named `reserved...` belong to operations of the host that no engine calls; they keep the others
/// in their places.
///
/// Thread: the host's user-interface thread. Nothing throws.
class ExportDataItem : public virtual bxbase::ReferencedObject {
public:
    virtual ~ExportDataItem() = default; // slot 0

private:
    virtual void reserved1() {}
    virtual void reserved2() {}
    virtual void reserved3() {}
    virtual void reserved4() {}

public:
    /// Slot 5. The folder the page lies in, or null. The caller does not own it; it lives at least as long as
    /// the page.
    virtual ExportFolder* getParentFolder() = 0;

private:
    virtual void reserved6() {}
    virtual void reserved7() {}

public:
    /// Slot 8. Fills in a name whose extension is that of the page's file form.
    virtual void getFileName(Sorvane::u8string& name) = 0;

private:
    virtual void reserved9() {}

public:
    /// Slot 10. True and the path of an existing file that holds the page's data, which stays the host's and
    /// must not be changed; false, with `path` untouched, if there is no such file.
    virtual bool getFilePath(std::wstring& path) = 0;

    /// Slot 11. Writes the page's data to a new file and gives its path. The file belongs to the caller,
    /// who deletes it or leaves it to the host's temporary root. On failure returns false, having recorded
    /// the reason in `error`; nothing is left behind.
    virtual bool createDataCopy(std::wstring& path, SorvaneException& error) = 0;
};
