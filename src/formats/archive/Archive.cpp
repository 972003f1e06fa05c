#include "formats/archive/Archive.h"

#include "formats/archive/CodePage1252.h"
#include "model/CorrievalDoc.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace corrieval {

namespace {
constexpr std::uint16_t kNewClassTag = 0xFFFF;
constexpr std::uint16_t kBigTag = 0x7FFF;
constexpr std::uint32_t kBigClassFlag = 0x80000000;
constexpr std::uint16_t kClassFlag = 0x8000;
constexpr std::uint16_t kWideStringMarker = 0xFFFE;
// Valid scores nest seven objects deep; this only stops a hostile file from exhausting the stack.
constexpr int kMaxDepth = 64;
} // namespace

CArchive::CArchive(QByteArray bytes, const ArchiveClassTable& classes, QString fileName, CCorrievalDoc* document)
    : m_mode(Mode::Load), m_classes(classes), m_fileName(std::move(fileName)), m_document(document),
      m_bytes(std::move(bytes))
{
}

CArchive::CArchive(const ArchiveClassTable& classes, QString fileName, CCorrievalDoc* document)
    : m_mode(Mode::Store), m_classes(classes), m_fileName(std::move(fileName)), m_document(document)
{
}

CArchive::~CArchive() = default;

std::uint32_t CArchive::Version() const
{
    return m_document != nullptr ? m_document->Version : CCorrievalDoc::CurrentVersion;
}

void CArchive::Fail(ArchiveCause cause, std::size_t offset, const QString& detail) const
{
    throw ArchiveError(cause, m_fileName, offset, detail);
}

void CArchive::CheckStoring() const
{
    if (!IsStoring())
        Fail(ArchiveCause::WriteToReadOnly, m_pos);
}

void CArchive::CheckLoading() const
{
    if (!IsLoading())
        Fail(ArchiveCause::ReadFromStore, m_pos);
}

void CArchive::Put(const void* data, std::size_t size)
{
    CheckStoring();
    m_bytes.append(static_cast<const char*>(data), static_cast<qsizetype>(size));
}

void CArchive::Get(void* data, std::size_t size)
{
    CheckLoading();
    if (size > static_cast<std::size_t>(m_bytes.size()) - m_pos)
        Fail(ArchiveCause::EndOfFile, m_pos);
    std::memcpy(data, m_bytes.constData() + m_pos, size);
    m_pos += size;
}

template <class T> void CArchive::PutLe(T v)
{
    unsigned char out[sizeof(T)];
    std::uint64_t bits = 0;
    std::memcpy(&bits, &v, sizeof(T));
    for (std::size_t i = 0; i < sizeof(T); ++i, bits >>= 8)
        out[i] = static_cast<unsigned char>(bits & 0xFF);
    Put(out, sizeof(T));
}

template <class T> T CArchive::GetLe()
{
    unsigned char in[sizeof(T)];
    Get(in, sizeof(T));
    std::uint64_t bits = 0;
    for (std::size_t i = sizeof(T); i-- > 0;)
        bits = (bits << 8) | in[i];
    T v;
    std::memcpy(&v, &bits, sizeof(T));
    return v;
}

#define CORRIEVAL_SYNC_LE(Type)                                                                              \
    void CArchive::Sync(Type& v)                                                                             \
    {                                                                                                        \
        if (IsStoring())                                                                                     \
            PutLe<Type>(v);                                                                                  \
        else                                                                                                 \
            v = GetLe<Type>();                                                                               \
    }
CORRIEVAL_SYNC_LE(std::uint8_t)
CORRIEVAL_SYNC_LE(std::uint16_t)
CORRIEVAL_SYNC_LE(std::uint32_t)
CORRIEVAL_SYNC_LE(std::int32_t)
CORRIEVAL_SYNC_LE(float)
CORRIEVAL_SYNC_LE(double)
CORRIEVAL_SYNC_LE(char16_t)
#undef CORRIEVAL_SYNC_LE

void CArchive::Sync(bool& v)
{
    std::uint8_t byte = v ? 1 : 0;
    Sync(byte);
    v = byte != 0;
}

void CArchive::Sync(QString& v)
{
    if (IsStoring())
        WriteString(v);
    else
        v = ReadString();
}

void CArchive::SyncRaw(std::uint8_t* data, std::size_t size)
{
    if (IsStoring())
        Put(data, size);
    else
        Get(data, size);
}

void CArchive::WriteCount(std::uint32_t count)
{
    if (count < 0xFFFF) {
        PutLe<std::uint16_t>(static_cast<std::uint16_t>(count));
    } else {
        PutLe<std::uint16_t>(0xFFFF);
        PutLe<std::uint32_t>(count);
    }
}

std::uint32_t CArchive::ReadCount()
{
    const auto count = GetLe<std::uint16_t>();
    return count != 0xFFFF ? count : GetLe<std::uint32_t>();
}

void CArchive::WriteString(const QString& s)
{
    const auto length = static_cast<std::uint32_t>(s.size());
    PutLe<std::uint8_t>(0xFF);
    PutLe<std::uint16_t>(kWideStringMarker);
    if (length < 0xFF) {
        PutLe<std::uint8_t>(static_cast<std::uint8_t>(length));
    } else if (length < kWideStringMarker) {
        PutLe<std::uint8_t>(0xFF);
        PutLe<std::uint16_t>(static_cast<std::uint16_t>(length));
    } else {
        PutLe<std::uint8_t>(0xFF);
        PutLe<std::uint16_t>(0xFFFF);
        PutLe<std::uint32_t>(length);
    }
    for (QChar c : s)
        PutLe<std::uint16_t>(c.unicode());
}

QString CArchive::ReadString()
{
    const std::size_t start = m_pos;
    bool wide = false;
    std::uint32_t length = GetLe<std::uint8_t>();
    if (length == 0xFF) {
        auto word = GetLe<std::uint16_t>();
        if (word == kWideStringMarker) {
            wide = true;
            length = GetLe<std::uint8_t>();
            word = length == 0xFF ? GetLe<std::uint16_t>() : 0;
        }
        if (length == 0xFF)
            length = word != 0xFFFF ? word : GetLe<std::uint32_t>();
    }
    const std::uint64_t size = static_cast<std::uint64_t>(length) * (wide ? 2 : 1);
    if (size > static_cast<std::uint64_t>(m_bytes.size()) - m_pos)
        Fail(ArchiveCause::EndOfFile, start);

    QString text;
    text.reserve(static_cast<qsizetype>(length));
    for (std::uint32_t i = 0; i < length; ++i)
        text.append(wide ? QChar(GetLe<std::uint16_t>()) : QChar(DecodeCodePage1252(GetLe<std::uint8_t>())));
    return text;
}

const ArchiveClass* CArchive::FindClass(std::string_view name) const
{
    auto it = std::find_if(m_classes.begin(), m_classes.end(),
                           [name](const ArchiveClass& c) { return c.Class->Name == name; });
    return it != m_classes.end() ? &*it : nullptr;
}

const ArchiveClass& CArchive::RecordFor(const CObject& object) const
{
    const CRuntimeClass* cls = &object.GetRuntimeClass();
    auto it = std::find_if(m_classes.begin(), m_classes.end(), [cls](const ArchiveClass& c) { return c.Class == cls; });
    if (it == m_classes.end())
        throw std::logic_error("class has no record in this archive: " + std::string(cls->Name));
    return *it;
}

void CArchive::WriteTag(std::uint32_t number, bool isClass)
{
    if (number < kBigTag) {
        PutLe<std::uint16_t>(static_cast<std::uint16_t>(number | (isClass ? kClassFlag : 0)));
    } else {
        PutLe<std::uint16_t>(kBigTag);
        PutLe<std::uint32_t>(number | (isClass ? kBigClassFlag : 0));
    }
}

void CArchive::WriteClassRecord(const CRuntimeClass& cls)
{
    PutLe<std::uint16_t>(kNewClassTag);
    PutLe<std::uint16_t>(cls.Schema);
    PutLe<std::uint16_t>(static_cast<std::uint16_t>(cls.Name.size()));
    Put(cls.Name.data(), cls.Name.size());
}

void CArchive::WriteObject(const CObject* object)
{
    CheckStoring();
    if (object == nullptr) {
        PutLe<std::uint16_t>(0);
        return;
    }
    if (auto known = m_storeNumbers.find(object); known != m_storeNumbers.end()) {
        WriteTag(known->second, false);
        return;
    }
    const ArchiveClass& entry = RecordFor(*object);
    if (auto cls = m_storeNumbers.find(entry.Class); cls != m_storeNumbers.end()) {
        WriteTag(cls->second, true);
    } else {
        WriteClassRecord(*entry.Class);
        m_storeNumbers.emplace(entry.Class, m_nextNumber++);
    }
    m_storeNumbers.emplace(object, m_nextNumber++);
    entry.Record(*this, const_cast<CObject&>(*object));
}

CObject* CArchive::ReadTagged(const CRuntimeClass& expected, bool owned, bool& created)
{
    CheckLoading();
    created = false;
    const std::size_t start = m_pos;
    const auto word = GetLe<std::uint16_t>();
    std::uint32_t tag = word;
    if (word == kBigTag)
        tag = GetLe<std::uint32_t>();
    else if (word & kClassFlag)
        tag = (word & ~kClassFlag) | kBigClassFlag;

    if (!(tag & kBigClassFlag)) {
        if (tag == 0)
            return nullptr;
        if (tag > m_loaded.size())
            Fail(ArchiveCause::BadIndex, start);
        CObject* object = m_loaded[tag - 1].Object;
        if (object == nullptr)
            Fail(ArchiveCause::BadClass, start, QStringLiteral("(a class where an object was expected)"));
        if (!object->IsKindOf(expected))
            Fail(ArchiveCause::BadClass, start, QStringLiteral("'%1'").arg(object->GetRuntimeClass().Name.data()));
        return object;
    }

    const ArchiveClass* cls = nullptr;
    if (word == kNewClassTag) {
        const auto schema = GetLe<std::uint16_t>();
        const auto nameLength = GetLe<std::uint16_t>();
        std::string name(nameLength, '\0');
        Get(name.data(), nameLength);
        cls = FindClass(name);
        if (cls == nullptr)
            Fail(ArchiveCause::BadClass, start, QStringLiteral("'%1'").arg(QString::fromLatin1(name.c_str())));
        if (schema != cls->Class->Schema)
            Fail(ArchiveCause::BadSchema, start, QStringLiteral("%1 of '%2'").arg(schema).arg(name.c_str()));
        m_loaded.push_back({cls, nullptr});
    } else {
        const std::uint32_t number = tag & ~kBigClassFlag;
        if (number == 0 || number > m_loaded.size())
            Fail(ArchiveCause::BadIndex, start);
        cls = m_loaded[number - 1].Class;
        if (cls == nullptr)
            Fail(ArchiveCause::BadClass, start, QStringLiteral("(an object where a class was expected)"));
    }
    if (!cls->Class->IsDerivedFrom(expected) || cls->Class->Create == nullptr)
        Fail(ArchiveCause::BadClass, start, QStringLiteral("'%1'").arg(cls->Class->Name.data()));
    if (m_depth >= kMaxDepth)
        Fail(ArchiveCause::BadClass, start, QStringLiteral("'%1' nested too deeply").arg(cls->Class->Name.data()));

    std::unique_ptr<CObject> object = cls->Class->Create();
    CObject* raw = object.get();
    m_loaded.push_back({nullptr, raw});
    if (!owned)
        m_unowned.emplace(raw, std::move(object));
    ++m_depth;
    cls->Record(*this, *raw);
    --m_depth;
    created = true;
    // An owned object goes to the caller, who wraps it again at once (ReadOwned).
    return owned ? object.release() : raw;
}

std::unique_ptr<CObject> CArchive::ReadOwned(const CRuntimeClass& expected)
{
    const std::size_t start = m_pos;
    bool created = false;
    CObject* object = ReadTagged(expected, true, created);
    if (object == nullptr || created)
        return std::unique_ptr<CObject>(object);
    std::unique_ptr<CObject> claimed = Claim(object);
    // An object that something owns already cannot be owned a second time.
    if (!claimed)
        Fail(ArchiveCause::BadIndex, start);
    return claimed;
}

CObject* CArchive::ReadReference(const CRuntimeClass& expected)
{
    bool created = false;
    return ReadTagged(expected, false, created);
}

std::unique_ptr<CObject> CArchive::Claim(CObject* object)
{
    auto it = m_unowned.find(object);
    if (it == m_unowned.end())
        return nullptr;
    std::unique_ptr<CObject> claimed = std::move(it->second);
    m_unowned.erase(it);
    return claimed;
}

} // namespace corrieval
