#pragma once

#include <QByteArray>

#include <random>
#include <utility>
#include <vector>

namespace tally::sample {

/// A random source that gives the same values with every compiler and library. The engine is fixed
/// by the standard, its distributions are not, and neither are the last bits of `std::exp`.
class Random {
public:
    explicit Random(quint64 seed) : engine_(seed) {}

    quint64 bits() { return engine_(); }

    /// A whole number from `low` to `high`, both included.
    int integer(int low, int high)
    {
        const quint64 span = static_cast<quint64>(qint64{high} - low) + 1;
        return static_cast<int>(low + static_cast<qint64>(bits() % span));
    }

    /// A number from `low` up to, but without, `high`.
    double real(double low, double high)
    {
        return low + (high - low) * (static_cast<double>(bits() >> 11) * 0x1p-53);
    }

    /// `integer` as the mails want it.
    double whole(int low, int high) { return integer(low, high); }

    bool chance(double probability) { return real(0.0, 1.0) < probability; }

    /// Right-skewed around `median`: about two thirds lie within a factor of 2^`spread` of it.
    double skewed(double median, double spread)
    {
        double normal = -6.0;
        for (int i = 0; i < 12; ++i)
            normal += real(0.0, 1.0);
        const double exponent = normal * spread;
        const int whole_part = static_cast<int>(exponent + 64.0) - 64;
        return median * (1.0 + exponent - whole_part) * power_of_two(whole_part);
    }

    template <typename List>
    const auto &pick(const List &list)
    {
        return list[static_cast<std::size_t>(integer(0, static_cast<int>(std::size(list)) - 1))];
    }

    template <typename T>
    void shuffle(std::vector<T> &list)
    {
        for (std::size_t i = list.size(); i > 1; --i)
            std::swap(list[i - 1], list[bits() % i]);
    }

    QByteArray bytes(int size)
    {
        QByteArray result(size, '\0');
        for (char &byte : result)
            byte = static_cast<char>(bits() & 0xff);
        return result;
    }

private:
    static double power_of_two(int exponent)
    {
        return exponent < 0 ? 1.0 / power_of_two(-exponent)
                            : static_cast<double>(quint64{1} << exponent);
    }

    std::mt19937_64 engine_;
};

} // namespace tally::sample
