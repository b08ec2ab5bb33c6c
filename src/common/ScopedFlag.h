#pragma once

namespace kestrum::common {

// Sets a flag for the lifetime of a scope and clears it however the scope ends: the flags that
// keep re-entrant calls apart (closing, adding, generating).
class ScopedFlag
{
public:
    explicit ScopedFlag(bool& flag) : m_flag(flag) { m_flag = true; }
    ~ScopedFlag() { m_flag = false; }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;

private:
    bool& m_flag;
};

} // namespace kestrum::common
