#pragma once

// Sections with a database row set by hand, for tests that must not depend on how the section
// database computes properties.

#include <SDBSection.h>

struct RowValues {
    double A, Iy, Iz;
    double Wely = 0.0, Welz = 0.0, Wply = 0.0, Wplz = 0.0, It = 0.0, Iw = 0.0;
};

template <typename Section>
Section withRow(Section section, const RowValues& v)
{
    SDBProperties p = section.getProperties();
    p.A = v.A;
    p.Iy = v.Iy;
    p.Iz = v.Iz;
    p.Wely = v.Wely;
    p.Welz = v.Welz;
    p.Wply = v.Wply;
    p.Wplz = v.Wplz;
    p.It = v.It;
    p.Iw = v.Iw;
    p.ey = 0.0;
    p.ez = 0.0;
    section.setProperties(p);
    return section;
}

// IPE 300 with the producers' table values: A = 53.81 cm2, Iy = 8356 cm4, Iz = 603.8 cm4,
// Wel,y = 557.1 cm3, Wel,z = 80.5 cm3, Wpl,y = 628.4 cm3, Wpl,z = 125.2 cm3, It = 20.12 cm4, Iw = 125.9e3 cm6.
inline SDBSectionI ipe300()
{
    return withRow(SDBSectionI(0.300, 0.150, 0.0071, 0.0107, 0.015),
                   {53.81e-4, 8356e-8, 603.8e-8, 557.1e-6, 80.5e-6, 628.4e-6, 125.2e-6, 20.12e-8, 125.9e-9});
}

// A section whose stress is numerically its coordinate: A = Iy = Iz = 1, so with Forces(0, 1, 0, ...) the
// normal stress at (y, z) is z, with Forces(0, 0, -1, ...) it is y.
inline SDBSectionR unitSection()
{
    return withRow(SDBSectionR(0.2, 0.1), {1.0, 1.0, 1.0});
}
