#pragma once

#include <cstdio>

// Prints measured figures and whether each is within its bar.
struct Bars
{
    bool allMet = true;

    void judge(const char *what, double value, double bar, const char *unit)
    {
        const bool isMet = value <= bar;
        allMet = allMet && isMet;
        std::printf("%-44s %10.2f %-4s bar %.2f %s\n", what, value, unit, bar,
                    isMet ? "met" : "MISSED");
    }
};
