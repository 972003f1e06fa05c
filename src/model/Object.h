#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace corrieval {

class CObject;

// The run-time record of one class: its stream name, its schema, its base and a factory.
// The score file names each class once and the reader builds objects from these records,
// so every class that can stand in a file has one (see formats/score/ScoreClasses.cpp).
struct CRuntimeClass {
    std::string_view Name;
    std::uint16_t Schema;
    const CRuntimeClass* Base;
    std::unique_ptr<CObject> (*Create)(); // null for abstract classes

    bool IsDerivedFrom(const CRuntimeClass& other) const;
};

// Root of every class that can be written to or read from a score file.
class CObject {
public:
    static const CRuntimeClass Class;

    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = delete;
    virtual ~CObject() = default;

    virtual const CRuntimeClass& GetRuntimeClass() const { return Class; }
    bool IsKindOf(const CRuntimeClass& cls) const { return GetRuntimeClass().IsDerivedFrom(cls); }
};

template <class T> std::unique_ptr<CObject> CreateObject() { return std::make_unique<T>(); }

} // namespace corrieval

// Declares the run-time record of a class; pair with CORRIEVAL_IMPLEMENT_CLASS in its source file.
#define CORRIEVAL_DECLARE_CLASS()                                                                            \
public:                                                                                                      \
    static const ::corrieval::CRuntimeClass Class;                                                           \
    const ::corrieval::CRuntimeClass& GetRuntimeClass() const override { return Class; }

#define CORRIEVAL_IMPLEMENT_CLASS(Type, BaseType)                                                            \
    const ::corrieval::CRuntimeClass Type::Class{#Type, 1, &BaseType::Class, &::corrieval::CreateObject<Type>}

#define CORRIEVAL_IMPLEMENT_ABSTRACT_CLASS(Type, BaseType)                                                   \
    const ::corrieval::CRuntimeClass Type::Class{#Type, 1, &BaseType::Class, nullptr}
