#pragma once

#include "formats/archive/ArchiveError.h"
#include "model/Object.h"

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corrieval {

class CArchive;
class CCorrievalDoc;

// Reads or writes the record of one object of a class, in the direction of the archive.
using RecordFunction = void (*)(CArchive&, CObject&);

// The classes a stream may name and the record of each.
struct ArchiveClass {
    const CRuntimeClass* Class;
    RecordFunction Record;
};
using ArchiveClassTable = std::vector<ArchiveClass>;

// The object stream of score files, the clipboard and player files: little-endian primitives,
// counts, strings, and objects tagged by class, each class named once and each object written
// once and afterwards referred to by number. Loading reads from memory, so every length can be
// checked against what is left before anything is allocated; storing builds the bytes in memory
// and the caller writes them out in one piece.
class CArchive {
public:
    enum class Mode { Load, Store };

    // Loading: reads `bytes`. Errors name `fileName`.
    CArchive(QByteArray bytes, const ArchiveClassTable& classes, QString fileName, CCorrievalDoc* document);
    // Storing: collect with Bytes() when done.
    CArchive(const ArchiveClassTable& classes, QString fileName, CCorrievalDoc* document);
    ~CArchive();

    bool IsStoring() const { return m_mode == Mode::Store; }
    bool IsLoading() const { return m_mode == Mode::Load; }
    // The document being read or written; null on the clipboard.
    CCorrievalDoc* Document() const { return m_document; }
    // The version that the records consult: the document's, or the current one without a document.
    std::uint32_t Version() const;
    const QByteArray& Bytes() const { return m_bytes; }
    std::size_t Position() const { return m_pos; }
    bool AtEnd() const { return m_pos >= static_cast<std::size_t>(m_bytes.size()); }

    // One value in the archive's direction: written from or read into the variable.
    void Sync(std::uint8_t& v);
    void Sync(std::uint16_t& v);
    void Sync(std::uint32_t& v);
    void Sync(std::int32_t& v);
    void Sync(float& v);
    void Sync(double& v);
    void Sync(bool& v);
    void Sync(QString& v);
    void SyncRaw(std::uint8_t* data, std::size_t size);
    // A glyph code held as a UTF-16 unit.
    void Sync(char16_t& v);

    // Counts of lists: a u16, with 0xFFFF and a u32 for large ones.
    void WriteCount(std::uint32_t count);
    std::uint32_t ReadCount();

    // Strings are always written as UTF-16. Reading also takes the older 8-bit form.
    void WriteString(const QString& s);
    QString ReadString();

    void WriteObject(const CObject* object);

    // Reads an object that the caller will own: a new object, or one read earlier through
    // ReadReference and not yet owned. The object must be of `expected` or a class derived
    // from it. Null for a null tag.
    std::unique_ptr<CObject> ReadOwned(const CRuntimeClass& expected);
    // Reads a pointer that does not own: the object stays with the archive until something
    // reads it with ReadOwned, or until Release of the remaining objects.
    CObject* ReadReference(const CRuntimeClass& expected);
    // Takes one object that is still held by the archive; false if it was owned already.
    std::unique_ptr<CObject> Claim(CObject* object);

    [[noreturn]] void Fail(ArchiveCause cause, std::size_t offset, const QString& detail = {}) const;

    template <class T> std::unique_ptr<T> ReadOwned()
    {
        return std::unique_ptr<T>(static_cast<T*>(ReadOwned(T::Class).release()));
    }
    template <class T> T* ReadReference() { return static_cast<T*>(ReadReference(T::Class)); }

    // A list of owned objects: a count and then the objects, null tags skipped.
    template <class T> void ReadOwnedList(std::vector<std::unique_ptr<T>>& list, const CRuntimeClass& expected)
    {
        const std::uint32_t count = ReadCount();
        for (std::uint32_t i = 0; i < count; ++i) {
            std::unique_ptr<CObject> object = ReadOwned(expected);
            if (object)
                list.emplace_back(static_cast<T*>(object.release()));
        }
    }
    template <class T> void ReadOwnedList(std::vector<std::unique_ptr<T>>& list)
    {
        ReadOwnedList(list, T::Class);
    }
    template <class List> void WriteList(const List& list)
    {
        WriteCount(static_cast<std::uint32_t>(list.size()));
        for (const auto& object : list)
            WriteObject(object.get());
    }

private:
    struct LoadedEntry {
        const ArchiveClass* Class = nullptr; // a class entry
        CObject* Object = nullptr;           // or an object entry
    };

    void Put(const void* data, std::size_t size);
    void Get(void* data, std::size_t size);
    template <class T> void PutLe(T v);
    template <class T> T GetLe();
    void CheckStoring() const;
    void CheckLoading() const;

    const ArchiveClass* FindClass(std::string_view name) const;
    const ArchiveClass& RecordFor(const CObject& object) const;
    void WriteTag(std::uint32_t number, bool isClass);
    void WriteClassRecord(const CRuntimeClass& cls);
    // Reads a tag and, for a new object, creates it and reads its record. `created` tells which.
    CObject* ReadTagged(const CRuntimeClass& expected, bool owned, bool& created);

    Mode m_mode;
    const ArchiveClassTable& m_classes;
    QString m_fileName;
    CCorrievalDoc* m_document;
    QByteArray m_bytes;
    std::size_t m_pos = 0;
    int m_depth = 0;

    // Storing: the numbers given out so far, shared by classes and objects.
    std::unordered_map<const void*, std::uint32_t> m_storeNumbers;
    // Loading: entry n - 1 is number n.
    std::vector<LoadedEntry> m_loaded;
    // Loading: objects read through references that nothing owns yet.
    std::unordered_map<CObject*, std::unique_ptr<CObject>> m_unowned;
    std::uint32_t m_nextNumber = 1;
};

} // namespace corrieval
