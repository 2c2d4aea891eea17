// Gives a variable another value for the length of a scope, and its former one back when the scope is left, by an
// exception too. For marks that a nested call has to see.
#pragma once

#include <utility>

template <typename TTarget, typename TValue>
class CScopedValue
{
public:
    CScopedValue(TTarget& Target, TValue Value) : m_Target(Target), m_Former(Target) { m_Target = std::move(Value); }
    ~CScopedValue() { m_Target = std::move(m_Former); }
    CScopedValue(const CScopedValue&) = delete;
    CScopedValue& operator=(const CScopedValue&) = delete;

private:
    TTarget& m_Target;
    TValue m_Former;
};
