#pragma once

// The interaction of compression and bending in members, EN 1993-1-1 (6.61) and (6.62) with the
// interaction factors of Annex B (method 2): Table B.1 for members not susceptible to torsional
// deformations, Table B.2 for members that are.

namespace design {

struct InteractionInput {
    double ny = 0.0, nz = 0.0;            // NEd / (chi NRk / gammaM1) about y and z
    double lambdaY = 0.0, lambdaZ = 0.0;  // non-dimensional slenderness
    double Cmy = 1.0, Cmz = 1.0, CmLT = 1.0;
    double My = 0.0, Mz = 0.0;            // design moments; their magnitudes enter unless signedMoments
    double MyRd61 = 0.0;                  // chiLT My,Rk / gammaM1 of (6.61)
    double MyRd62 = 0.0;                  // the same of (6.62)
    double MzRd = 0.0;                    // Mz,Rk / gammaM1
    bool plastic = true;                  // class 1 or 2 (else the elastic columns of class 3 and 4)
    bool iSection = true;                 // I or H section (its kzz formula of Table B.1)
    bool torsionallyDeformable = false;   // Table B.2
    // Table B.1, note: for I and H sections under compression and uniaxial bending My, kzy may be 0.
    bool kzyZeroWithoutMz = true;
    // Variants that reproduce rules of the library, to isolate the effect of each departure:
    bool signedMoments = false;           // the moments enter with their signs (My of (6.62) excepted)
    bool kzzWithCmy = false;              // the I-section kzz of classes 1 and 2 multiplies by Cmy
};

struct InteractionResult {
    double kyy = 1.0, kyz = 1.0, kzy = 1.0, kzz = 1.0;
    double eq661 = 0.0, eq662 = 0.0;
    double governing() const { return eq661 > eq662 ? eq661 : eq662; }
};

InteractionResult interaction(const InteractionInput& in);

} // namespace design
