#pragma once

#include "objfile/format/HFileInputByteStream.h"
#include "objfile/model/TOBFExpr.h"
#include "objfile/model/TOBFModule.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

class TOBFFilename;
class TOBFLocus;
class TOBFMarker;
class TOBFInsn;
class TOBFFunctionType;
class TOBFPtrType;
class TOBFStrucType;

/// Runs an object file, which is a program of one-byte records over an operand stack, and builds
/// the module that it describes. Everything malformed ends in an HException, and nothing partial is
/// handed out.
class TOBFReader {
public:
    /// The stream must outlive the reader. With `keepLocus` a source position stays in force until
    /// the next; without, it belongs to the next item only.
    TOBFReader(const HByteStream* stream, bool keepLocus);
    virtual ~TOBFReader();
    TOBFReader(const TOBFReader&) = delete;
    TOBFReader& operator=(const TOBFReader&) = delete;

    /// The module, which its caller gives back with `release`; null if the stream holds none. With
    /// `trace` each record's offset and name go to standard output.
    TOBFModule* readFile(bool trace = false);
    /// The same, but stops at the end of the information: scopes, libraries and attributes only.
    TOBFModule* readFileQuickly(bool trace = false);
    /// Destroys the module's pool and so every object of it.
    static void release(TOBFModule* module);

protected:
    /// Makes a machine instruction from its operands on the stack.
    virtual TOBFInsn* makeInsn() = 0;
    virtual const char* processorName() const = 0;

    static constexpr bool AllowNull = true;
    TOBFObject* popObject();
    std::int64_t popConst();
    /// Bounds are inclusive.
    unsigned popConst(unsigned lowest, unsigned highest);
    TOBFExpr* popExpr(bool allowNull = false);
    TOBFScope* popScope(bool allowNull = false);
    HString* popString();
    TOBFSection* popSection();
    TOBFType* popType();
    TOBFSymbol* popSymbol();
    void push(TOBFObject* object);

private:
    static constexpr std::size_t StackDepth = 100;

    /// Numbers and strings are kept as they are, and become objects only where one is needed: most
    /// are consumed by the next record.
    struct Operand {
        enum Kind : std::uint8_t { Object, Const, String } kind = Object;
        std::uint32_t length = 0;
        union {
            TOBFObject* object = nullptr;
            std::int64_t value;
            const char* text;
        };
    };
    using Handler = void (TOBFReader::*)();
    struct Record {
        const char* name;
        Handler handler;
    };
    /// Objects by number: a vector for the numbers that a file of this size can hold, a map for
    /// those beyond.
    template <typename T> class NumberedObjects {
    public:
        explicit NumberedObjects(std::size_t dense) : m_limit(dense) { }
        T*& at(std::uint64_t number);
        T* find(std::uint64_t number) const;

    private:
        std::size_t m_limit;
        std::vector<T*> m_dense;
        std::unordered_map<std::uint64_t, T*> m_sparse;
    };

    static const Record* records();

    TOBFModule* run(bool trace);
    void step(unsigned char tag);
    void traceRecord(std::size_t offset, unsigned char tag) const;
    unsigned char nextByte();

    Operand& pushOperand();
    Operand popOperand();
    void pushConst(std::int64_t value);
    void pushString(unsigned offset, unsigned length);
    std::string_view popText();
    HString* popStringOrNull();
    std::int32_t popInt() { return static_cast<std::int32_t>(popConst()); }
    TOBFFilename* popFilename();
    TOBFStrucType* popStruc();
    TOBFFunctionType* popFunction();
    TOBFMarker* marker(std::uint64_t number);
    TOBFSection* currentSection();
    TOBFInsn* currentInsn();
    void place(TOBFInsn* insn);
    void addItem(TOBFInsn* insn);
    void addProcessorInsn(bool hidden);
    TOBFExpr* asMarkerExpr(TOBFObject* object);

    // One handler a record, in the order of the tags.
    void literalExtended();
    void null();
    void nullNull();
    void binary();
    void makeSymbol();
    void symbolValue();
    void alias();
    void makeAlias();
    void makeStringZ();
    void makeString();
    void markerDef();
    void markerRef();
    void stringPool();
    void section();
    void makeSection();
    void symbolDef();
    void setType();
    void setName();
    void defBytes();
    void insn() { addProcessorInsn(false); }
    void hiddenInsn() { addProcessorInsn(true); }
    void fill();
    void align();
    void origin();
    void fragmentBreak();
    void makePublic();
    void locus();
    void makeFilename();
    void setPC();
    void setBytes();
    void simpleType();
    void oldStruc();
    void array();
    void countedArray();
    void pointer();
    void untyped();
    void floating();
    void function();
    void member();
    void staticField();
    void dynamicField();
    void parameterIn();
    void parameterOut();
    void library();
    void setScope();
    void makeScope();
    void duplicate();
    void drop() { popOperand(); }
    void space();
    void attribute();
    void forwardType();
    void nothing() { }
    void setProtected();
    void codelet();
    void struc();
    void linkOrderPriority();
    void patchable();
    void instrumentationData();
    void patched();
    void registerNumber();
    void localInsn();
    void setFlags();
    void resetLocus() { m_locus = nullptr; }
    void setFunctionSymbol();
    void adjustStack() { m_stackAdjustment = popInt(); }
    void init();
    void symbolLocus();
    void endOfInfo();
    void extensionWord();
    void defAddr();
    void memorySpace();
    void pointerRepresentation();
    void linkIf();
    void endLinkIf();

    const unsigned char* m_begin;
    const unsigned char* m_cursor;
    const unsigned char* m_end;
    const bool m_keepLocus;
    bool m_quick = false;
    unsigned char m_tag = 0;

    Operand m_stack[StackDepth];
    std::size_t m_depth = 0;
    NumberedObjects<TOBFObject> m_aliases;
    NumberedObjects<TOBFMarker> m_markers;

    std::unique_ptr<Pool> m_pool;
    Pool* m_outerPool = nullptr;
    TOBFModule* m_module = nullptr;
    TOBFSection* m_section = nullptr;
    TOBFInsn* m_insn = nullptr;
    TOBFLocus* m_locus = nullptr;
    std::int32_t m_pc = -1;
    std::int32_t m_stackAdjustment = 0;
    bool m_pendingBreak = false;
    TOBFPtrType* m_lastPointer = nullptr;
    const char* m_stringPool = "";
    unsigned m_stringPoolSize = 0;
    /// Bytes of images that may still be copied: pieces that overlap in the pool must not add up to
    /// memory out of proportion to the file.
    std::uint64_t m_imageBudget;
};

template <typename T> T*& TOBFReader::NumberedObjects<T>::at(std::uint64_t number)
{
    if (number >= m_limit)
        return m_sparse[number];
    if (number >= m_dense.size())
        m_dense.resize(std::max<std::size_t>(static_cast<std::size_t>(number) + 1,
                                             std::min(m_limit, m_dense.size() * 2)));
    return m_dense[static_cast<std::size_t>(number)];
}

template <typename T> T* TOBFReader::NumberedObjects<T>::find(std::uint64_t number) const
{
    if (number < m_dense.size())
        return m_dense[static_cast<std::size_t>(number)];
    const auto it = m_sparse.find(number);
    return it != m_sparse.end() ? it->second : nullptr;
}
