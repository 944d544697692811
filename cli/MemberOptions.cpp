#include "MemberOptions.h"

namespace cli {

void MemberOptions::addTo(CLI::App& app)
{
    addNumber(app, "--length", length, "buckling length L in m (about y, about z and lateral-torsional)");
    addNumber(app, "--lcr-y", lengthY, "buckling length Lcr,y about y in m (default: --length)");
    addNumber(app, "--lcr-z", lengthZ, "buckling length Lcr,z about z in m (default: --length, else Lcr,y)");
    addNumber(app, "--lcr-t", lengthT,
              "torsional buckling length l_T in m, between restraints against twist (6.3.1.4; default: "
              "--l-lt, else Lcr,z)");
    addNumber(app, "--l-lt", lengthLT,
              "lateral-torsional buckling length LLT in m, between lateral restraints (default: --length, "
              "else Lcr,z)");
    addForceOptions(app, forces);
    addNumber(app, "--gamma-m1", gammaM1, "partial factor gammaM1")->default_str("1.0");
    app.add_option("--moments-y", momentsY,
                   "moments about y at start, middle and end, \"M1,Mm,M2\" in kNm (default: My all along)");
    app.add_option("--diagram-y", diagramY, "shape of the y diagram: polygonal or parabolic")->capture_default_str();
    app.add_option("--moments-z", momentsZ, "moments about z, \"M1,Mm,M2\" in kNm (default: Mz all along)");
    app.add_option("--diagram-z", diagramZ, "shape of the z diagram: polygonal or parabolic")->capture_default_str();
    addNumber(app, "--max-moment", maxMoment,
              "largest moment along the member in kNm (default: the largest of the y moments)");
    app.add_option("--load-point", loadPoint, "load application point: center, top or bottom")->capture_default_str();
    addNumber(app, "--mcr", mcr, "elastic critical moment Mcr in kNm (default: computed)");
    app.add_option("--mcr-method", mcrMethod,
                   "how Mcr is computed: tables (the library's moment coefficients) or numerical (finite elements)")
        ->capture_default_str();
    addNumber(app, "--c-theta", cTheta, "rotational restraint C_theta (default: none)");
    addNumber(app, "--shear-panel", shearPanel, "shear-panel stiffness S (default: none)");
    auto* rolled = app.add_flag("--rolled-method", rolledMethod,
                                "lateral-torsional buckling by 6.3.2.3 for any section (default for I sections)");
    app.add_flag("--general-method", generalMethod, "lateral-torsional buckling by the general case 6.3.2.2")
        ->excludes(rolled);
    app.add_flag("--torsionally-deformable", torsionallyDeformable,
                 "interaction factors of Table B.2 (members susceptible to torsional deformations)");
    app.add_flag("--twist-restrained", twistRestrained,
                 "the member is restrained against twist: interaction factors of Table B.1 under EN rules (Table B.2 "
                 "wherever lateral-torsional buckling is checked otherwise)");
    app.add_flag("--cm-floor", cmFloor, "equivalent moment factors Cm of at least 0.9");
    addStandardOptions(app, standard);
    rules.addTo(app);
}

} // namespace cli
