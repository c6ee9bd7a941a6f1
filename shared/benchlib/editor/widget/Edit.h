#pragma once

#include "base/Path.h"
#include "editor/commands/EditCommand.h"
#include "editor/document/CodeDocument.h"

#include <QString>

class QPagedPaintDevice;
class QPainter;

/// What the main window knows of any document window.
class Edit {
public:
    using ModState = CodeDocument::ModState;
    using Command = EditCommand;

    virtual ~Edit() = default;

    virtual qint64 sizeInBytes() const = 0;
    virtual int lineCount() const = 0;
    virtual QString fileName() const = 0;
    /// A locked document stays so unless forced.
    virtual void setModState(ModState state, bool force) = 0;
    virtual void refreshModState() = 0;
    virtual bool load(const Path& path) = 0;
    virtual bool modified() const = 0;
    virtual bool isReadOnly() const = 0;
    virtual bool canEdit() const = 0;
    /// For the status bar.
    virtual QString statusNote() const = 0;
    virtual bool save() = 0;
    /// 1 for saved or nothing to do, 0 for not to be saved, -1 for cancelled or failed.
    virtual int checkSaved() = 0;
    /// Without asking if `force`; false if the user wants to keep it open.
    virtual bool close(bool force) = 0;
    virtual void setCaption(const QString& text) = 0;
    virtual bool isAvailable(Command command) const = 0;
};

struct PrintParameters {
    /// Of a page, in units of the device.
    double pageWidth = 0;
    double pageHeight = 0;
    QPagedPaintDevice* device = nullptr;
};

/// What can be printed, page by page.
class PrintInterface {
public:
    virtual ~PrintInterface() = default;

    /// Sets what the document itself wishes.
    virtual void initParameters(PrintParameters& parameters) = 0;
    virtual void beginPrinting(const PrintParameters& parameters) = 0;
    virtual int totalPages() const = 0;
    /// A page from 0 on; the painter's origin is the page's printable corner.
    virtual void render(int page, QPainter& painter) = 0;
    virtual void endPrinting() = 0;
};

/// What a search over everything that is open asks.
class SpotlightInterface {
public:
    virtual ~SpotlightInterface() = default;

    virtual bool findFirst(const QString& text) = 0;
    virtual bool findNext(const QString& text) = 0;
};

class URLInterface {
public:
    virtual ~URLInterface() = default;

    /// "file:///PATH#LINE:COLUMN"
    virtual QString url() const = 0;
};
