#pragma once

#include <QByteArray>

namespace ambrel {

/// Pseudo-random numbers, the same ones in every run.
class Noise
{
public:
    /// The next number of so many bits, at most 32.
    unsigned next(int bits)
    {
        m_value = m_value * 1664525 + 1013904223;
        return m_value >> (32 - bits);
    }

private:
    unsigned m_value = 1;
};

/// Bytes that no codec finds a pattern in.
inline QByteArray noisyBytes(qsizetype size)
{
    Noise noise;
    QByteArray bytes(size, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = static_cast<char>(noise.next(8));
    return bytes;
}

} // namespace ambrel
