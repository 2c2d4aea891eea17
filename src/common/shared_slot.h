// A shared pointer behind a tiny lock of its own. Readers take a reference and keep it while they use the object, so
// the owner may empty the slot at any time without waiting for them. The pointer that leaves the slot is dropped after
// the lock is left: a destructor never runs under it.
#pragma once

#include <memory>
#include <utility>

#include "common/lock.h"

template <typename T>
class CSharedSlot
{
public:
    std::shared_ptr<T> Get() const
    {
        CLock Lock(m_csSlot);
        return m_pObject;
    }

    // Stores the pointer and returns what the slot held before.
    std::shared_ptr<T> Exchange(std::shared_ptr<T> pObject)
    {
        CLock Lock(m_csSlot);
        m_pObject.swap(pObject);
        return pObject;
    }

    // Stores the pointer only if the slot is empty; true if it did.
    bool Adopt(const std::shared_ptr<T>& pObject)
    {
        CLock Lock(m_csSlot);
        if (m_pObject)
            return false;
        m_pObject = pObject;
        return true;
    }

    std::shared_ptr<T> Take() { return Exchange(nullptr); }

private:
    mutable COwnedCriticalSection m_csSlot;
    std::shared_ptr<T> m_pObject PHN_GUARDED_BY(m_csSlot);
};
