#pragma once

#include "objfile/loadfiles/AddressRanges.h"
#include "objfile/loadfiles/LoadFileSections.h"
#include "script/es/ESClass.h"
#include "target/TargetExceptions.h"
#include "target/TargetInterfaceHelperFunctions.h"
#include "target/TargetInterfacePropertyValue.h"
#include "target/TargetMemoryInterface.h"
#include "target/TargetProject.h"
#include "target/TargetRegisterInterface.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>

class LoadFileInterface;

/// Bits of the capability word.
namespace TargetCapability {
inline constexpr unsigned AccessMemory = 0x3; ///< both bits: memory can be read and written
inline constexpr unsigned Load = 0x4;
inline constexpr unsigned Verify = 0x8;
inline constexpr unsigned Reset = 0x10;
inline constexpr unsigned Debug = 0x20;
inline constexpr unsigned Execute = 0x40;    ///< runs a program without the debugger
inline constexpr unsigned Interrupts = 0x80; ///< offers interrupts to raise by hand
inline constexpr unsigned Erase = 0x100;     ///< by range and in whole
inline constexpr unsigned CycleCount = 0x200;
inline constexpr unsigned Attach = 0x400;
inline constexpr unsigned EraseAllOnly = 0x800;
inline constexpr unsigned InstructionCount = 0x1000;
inline constexpr unsigned Lock = 0x2000; ///< by range and in whole
inline constexpr unsigned LockAllOnly = 0x4000;
inline constexpr unsigned Unlock = 0x8000; ///< by range and in whole
inline constexpr unsigned UnlockAllOnly = 0x10000;
inline constexpr unsigned NoVerify = 0x20000; ///< although Verify is set

constexpr bool canVerify(unsigned capabilities)
{
    return (capabilities & Verify) != 0 && (capabilities & NoVerify) == 0;
}
} // namespace TargetCapability

/// A connection to one target. Every operation reports failure by throwing HException, whose
/// message is the whole report. On the simulator `go` returns when the target has stopped; on
/// hardware, once it runs.
///
/// It is also the class of the script object "TargetInterface".
class TargetInterface : public ESClass {
public:
    TargetInterface(QString title, unsigned capabilities,
                    TargetInterfaceHelperFunctions* host = nullptr);

    // The script object.
    void call(ESContext* context, ESObject* function, ESObject* thisObject, int argc,
              ESValue* argv) override;

    ~TargetInterface() override;

    /// With `identify` the device is asked what it is; else the project's choice is believed.
    virtual void connect(bool identify) = 0;
    virtual void disconnect() = 0;
    virtual bool isConnected() const = 0;
    /// Polled by the host while the target runs.
    virtual bool isStopped() = 0;
    virtual void debugBegin();
    virtual void debugEnd();
    virtual bool canBeExternallyDisconnected() const { return false; }
    virtual bool hasBeenExternallyDisconnected() { return false; }
    virtual TargetMemoryInterface* codeMemory() = 0;
    virtual TargetMemoryInterface* dataMemory() = 0;
    /// Null without an EEPROM.
    virtual TargetMemoryInterface* eeMemory() { return nullptr; }
    /// Names of the memories that can be programmed by hand.
    virtual QStringList allMemoryInterfaces() { return {}; }
    virtual void selectMemoryInterface(const QString&) { }
    virtual TargetMemoryInterface* getSelectedMemoryInterface() { return codeMemory(); }
    virtual void flushMemoryInterfaces() { }
    virtual TargetRegisterInterface* registers() { return nullptr; }
    virtual std::uint64_t cycleCount() const { return 0; }
    virtual bool isCompatibleWith(const QString& /*processor*/) const { return true; }
    virtual unsigned capabilities() const { return m_capabilities; }
    virtual void setCapability(unsigned bits, bool on);
    /// Resets, runs the reset script and, unless that fails or `stayStopped`, goes.
    virtual void reset(bool stayStopped, bool forDownload) = 0;
    virtual void go() = 0;
    /// Sets the PC if asked, then runs.
    virtual void start(bool setPC, unsigned pc) = 0;
    virtual void attach() { executeAttachScript(); }
    /// One instruction.
    virtual void step() = 0;
    virtual void stop() = 0;
    /// Forgets all breakpoints and trace state.
    virtual void clear() = 0;
    /// Called on the outermost loadBegin and loadEnd.
    virtual void loadBeginInitial() { }
    virtual void loadEndFinal() { }

    // Load operations. Each is one load session and one group of the log; a cancelled one throws
    // HException "Erase cancelled" and the like.

    /// All memories; nothing is erased again in the same session.
    virtual void eraseAll();
    virtual void eraseAll(TargetMemoryInterface* memory, const QString& name);
    /// Skips what `erased` holds and adds to it; null for no such record.
    virtual void eraseBytes(TargetMemoryInterface* memory, AddressRanges* erased, unsigned address,
                            unsigned length);
    virtual void lockAll();
    virtual void lockAll(TargetMemoryInterface* memory, const QString& name);
    virtual void lockBytes(TargetMemoryInterface* memory, unsigned address, unsigned length);
    virtual void unlockAll();
    virtual void unlockAll(TargetMemoryInterface* memory, const QString& name);
    virtual void unlockBytes(TargetMemoryInterface* memory, unsigned address, unsigned length);
    /// `image` asks the sections for their patched data; `differential` leaves alone what the
    /// target holds already, where it can tell.
    virtual void eraseLoadFile(LoadFileInterface* file, const char* name, bool image,
                               bool differential);
    virtual void downloadLoadFile(LoadFileInterface* file, const char* name, bool image,
                                  bool differential);
    /// Reads what the file's sections cover into `uploaded`.
    virtual void uploadLoadFile(LoadFileInterface* file, const char* name,
                                LoadFileSections& uploaded);
    /// Throws HException if a section lies outside the target's memory.
    virtual void checkLoadFileFits(LoadFileInterface* file);
    /// True if all matched.
    virtual bool verifyLoadFile(LoadFileInterface* file, const char* name, bool image,
                                bool differential);
    /// Lets a target write values of its own into the image.
    virtual void patchLoadFile(LoadFileInterface*) { }

    /// Makes the global "TargetInterface" of a script context. The context must not outlive this.
    virtual void installScriptObject(ESContext* context);
    virtual bool loaderEraseAll() const { return m_eraseAll.toBool(); }
    /// The name of the picture for the target.
    virtual QString getObjectPixmap(bool /*open*/) const { return QStringLiteral("chip"); }
    virtual bool getObjectBold() const { return isConnected(); }

    // Scripts of the project. True unless the script fails; also if there is none.
    virtual bool executeResetScript(bool forDownload);
    virtual bool executeAttachScript();
    virtual bool executeRunScript();
    virtual bool executeStopScript();
    virtual bool executeDebugBeginScript();
    virtual bool executeDebugEndScript();
    virtual bool executeConnectScript();
    virtual bool executeDisconnectScript();

    /// Overrides add theirs behind those of the base.
    virtual void getProperties(PropertyValueList& list);
    virtual int getNumInterrupts() { return 0; }
    virtual void getInterruptInformation(unsigned /*index*/, unsigned& /*number*/,
                                         QString& /*name*/, QString& /*description*/)
    {
    }
    /// Names of the entries that the project's script adds to the target's menu; none unless
    /// connected.
    virtual QStringList getMenuEntries();
    virtual void executeMenuEntry(const QString& name);
    virtual std::uint64_t serialNumber() const { return 0; }
    virtual QString addressString(unsigned address);
    virtual void syncSettingsWithProject(ProjectElement* project, const QString& configuration);
    virtual void raiseInterrupt(int) { }

    /// Load sessions nest; what was erased is remembered until the outermost ends.
    void loadBegin();
    /// The nesting is reduced even if loadEndFinal throws.
    void loadEnd();
    /// Does nothing unless connected.
    void reconnect();

    const QString& title() const { return m_title; }
    void setTitle(const QString& title) { m_title = title; }
    QString deviceId() const { return m_deviceType.toString(); }
    void setDeviceId(const QString& id) { m_deviceType.setPropertyValue(id); }
    void setLoaderEraseAll(bool on) { m_eraseAll.setValue(on); }
    const TargetProject& project() const { return m_project; }
    bool inDebugSession() const { return m_inDebugSession; }
    QString propertyValue(const PropertyClass* propertyClass, bool expand) const
    {
        return m_project.value(propertyClass, expand);
    }
    /// The path of the project's memory map; empty if it has none.
    QString memoryMapFile() const;
    /// The text of that file; false if there is none or it can't be read.
    bool memoryMap(QString& text) const;
    /// The text of the project's target script file, or the null string.
    QString targetScript();

    /// Called now and then in long operations, so that the host can keep its log alive.
    void progressing() const { m_progressing(); }
    void setProgressing(void (*progressing)());

    // Parts of the load operations, by sections. A null memory makes them do nothing.
    // `total` is in bytes; `erased` may be null.
    using Sections = LoadFileSections::List;
    void eraseSections(TargetMemoryInterface* memory, AddressRanges* erased,
                       const Sections& sections, unsigned total, bool image, bool differential,
                       bool onlyIfRequired);
    void downloadSections(TargetMemoryInterface* memory, const AddressRanges* erased,
                          const Sections& sections, unsigned total, bool image, bool differential);
    /// True if all matched.
    bool verifySections(TargetMemoryInterface* memory, const AddressRanges* erased,
                        const Sections& sections, unsigned total, bool image, bool differential);
    void lockSections(TargetMemoryInterface* memory, const Sections& sections, unsigned total);
    void unlockSections(TargetMemoryInterface* memory, const Sections& sections, unsigned total);
    void uploadSections(TargetMemoryInterface* memory, const Sections& sections, unsigned total,
                        Sections& uploaded);
    /// Throws HException if a section lies outside the memory's valid ranges, where it has any.
    void checkSectionsFit(TargetMemoryInterface* memory, const Sections& sections);
    /// What has been erased in the running load session.
    AddressRanges& codeErasedRanges() { return m_codeErased; }
    AddressRanges& eeErasedRanges() { return m_eeErased; }

protected:
    TargetInterfaceHelperFunctions& host() const { return *m_host; }
    /// Throws BenchCancelException if the user has cancelled.
    void throwIfCancelled() const;

private:
    struct Step;
    struct WholeMemoryOperation;
    struct RangeOperation;
    struct EraseOptions;

    void operation(const QString& title, const char* verb, const std::function<void()>& work);
    void wholeMemories(const WholeMemoryOperation& kind);
    void wholeMemory(TargetMemoryInterface& memory, const WholeMemoryOperation& kind,
                     const QString& name);
    void range(TargetMemoryInterface* memory, const RangeOperation& kind, unsigned address,
               unsigned length);
    void rangeSections(TargetMemoryInterface* memory, const RangeOperation& kind,
                       const Sections& sections, unsigned total);
    void logSection(const char* verb, const LoadFileSectionInterface& section);
    void logRange(const char* verb, const QString& name, unsigned address, unsigned length);
    bool isDifferential(const TargetMemoryInterface& memory, bool differential) const;
    std::vector<Step> writeSteps(const Sections& sections, const AddressRanges* erased,
                                 bool image) const;
    void eraseBlocks(TargetMemoryInterface& memory, AddressRanges* erased, const Sections& sections,
                     unsigned total, const EraseOptions& options);
    void progressTo(unsigned done);

    bool executeScript(const char* property, const char* logLine, bool unlessRunning);
    bool executeText(const QString& text);

    QString m_title;
    unsigned m_capabilities;
    TargetInterfacePropertyValue m_deviceType;
    TargetInterfacePropertyValue m_eraseAll;
    TargetProject m_project;
    TargetInterfaceHelperFunctions* m_host;
    int m_loadNesting = 0;
    AddressRanges m_codeErased;
    AddressRanges m_eeErased;
    bool m_inDebugSession = false;
    QStringList m_menuEntries;
    void (*m_progressing)();
};
