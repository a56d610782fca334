#pragma once
// Intrusive reference count shared by the CPU image classes. Images travel between layers,
// chains and files by pointer; whoever keeps one retains it, whoever drops it releases it.
// The count is deliberately not atomic: an image is only ever used by one thread at a time.

#include <cstdint>
#include <utility>

class SxSmartPtr
{
public:
    SxSmartPtr() = default;
    SxSmartPtr(const SxSmartPtr&) : refCount(1) {}
    SxSmartPtr& operator=(const SxSmartPtr&) { return *this; }
    virtual ~SxSmartPtr() = default;

    void retain() { ++refCount; }

    /** Drops one reference; deletes the object when it was the last one. */
    void release()
    {
        if (refCount-- == 1)
            delete this;
    }

    int32_t getReferenceCount() const { return refCount; }

protected:
    int32_t refCount = 1;
};

/** Owns one reference to an SxSmartPtr object and releases it when it goes, so that
    code holding images needs no hand-written retain/release pairs. */
template <typename T>
class SxRef
{
public:
    SxRef() = default;
    /** Adopts a reference the caller already owns (such as a freshly constructed image). */
    static SxRef adopt(T* object) { SxRef r; r.object = object; return r; }
    /** Takes a new reference to an object owned elsewhere. */
    static SxRef share(T* object) { if (object) object->retain(); return adopt(object); }

    SxRef(const SxRef& other) : object(other.object) { if (object) object->retain(); }
    SxRef(SxRef&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    SxRef& operator=(SxRef other) noexcept { std::swap(object, other.object); return *this; }
    ~SxRef() { if (object) object->release(); }

    T* get() const { return object; }
    T* operator->() const { return object; }
    T& operator*() const { return *object; }
    explicit operator bool() const { return object != nullptr; }
    void reset() { SxRef().swapWith(*this); }

private:
    void swapWith(SxRef& other) noexcept { std::swap(object, other.object); }
    T* object = nullptr;
};
