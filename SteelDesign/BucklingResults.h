#pragma once

#include "Axis.h"
#include "BucklingCurve.h"
#include "ErrorCode.h"
#include "Export.h"
#include "Nullable.h"

#include <array>
#include <cstddef>

namespace SteelDesign {

// The record of the member checks (flexural, lateral-torsional and shear buckling, and the interaction
// of compression and bending). BucklingResistance writes every intermediate and final value into it;
// the host owns it and reads the values back. A plain value type: it computes nothing but the verdicts.
//
// Keyed values (by UtilizationType, Axis, SectionParts, InteractionFactorkxx) are stored in fixed
// arrays indexed by the key, each slot with a presence flag, so that a check never allocates. Every key
// of an enumeration is always held; a slot that was not written reads as empty (getters returning
// kat::Nullable) or as 0.0 (getters returning a plain double). A key outside its enumeration's range
// (an Axis cast from 2, say) is never stored: its setter does nothing and its getter reads empty / 0.0.
class STEELDESIGN_API BucklingResults {
public:
    enum class UtilizationType : int {
        CompressionAxisY = 0,         // flexural buckling about y: |N| / Nb,y,Rd (6.46)
        CompressionAxisZ = 1,         // flexural buckling about z: |N| / Nb,z,Rd
        Compression = 2,              // the larger of 0 and 1
        BendingAxisY = 3,             // lateral-torsional buckling: |My| / Mb,Rd (6.54)
        BendingAxisZ = 4,             // |Mz| / Mb,Rd (the major-axis Mb,Rd)
        Bending = 5,                  // the larger of 3 and 4; also the key of Mb,Rd
        CompressionBendingAxisY = 6,  // interaction (6.61)
        CompressionBendingAxisZ = 7,  // interaction (6.62)
        CompressionBending = 8,       // the larger of 6 and 7
    };
    static constexpr std::size_t utilizationTypeCount = 9;

    // Parts of the shear buckling resistance (EN 1993-1-5 5.2): the web Vbw,Rd, the flanges Vbf,Rd and
    // the limited sum Vb,Rd.
    enum class SectionParts : int {
        Web = 0,
        Flange = 1,
        Total = 2,
    };

    // The interaction factors of EN 1993-1-1 Annex B. (6.61) reads kyy with My and kyz with Mz, (6.62)
    // kzy with My and kzz with Mz.
    enum class InteractionFactorkxx : int {
        kyy = 0,
        kzz = 1,
        kyz = 2,
        kzy = 3,
    };

    BucklingResults();

    // Empties every optional value, sets every plain value to 0, the error code to NoError and the
    // shear-buckling error code to ShearBucklingNotRequired (the check has not been performed).
    void reset();

    // True when the utilization does not exceed 1.0 by more than KaMath::getEpsReal().
    bool isVerified(double utilization) const;
    // True when the utilization of the type is present and verified.
    bool isFulfilled(UtilizationType type) const;
    // isFulfilled of all nine types in order, stopping at the first that is not. A member check fills
    // only some of them (a pure compression check leaves 3 to 8 empty), so this is true only when all
    // checks have run; the verdict of one check is isFulfilled of its own type.
    bool verifyAllUtilizations() const;

    // --- keyed values -------------------------------------------------------------------------------
    kat::Nullable<double> getBucklingResistance(UtilizationType type) const { return at(bucklingResistance_, type); }
    void setBucklingResistance(UtilizationType type, double value) { put(bucklingResistance_, type, value); }
    kat::Nullable<double> getUtilization(UtilizationType type) const { return at(utilization_, type); }
    void setUtilization(UtilizationType type, double value) { put(utilization_, type, value); }
    kat::Nullable<double> getChi(Axis axis) const { return at(chi_, axis); }
    void setChi(Axis axis, double value) { put(chi_, axis, value); }
    double getLambda(Axis axis) const { return at(lambda_, axis).valueOr(0.0); }
    void setLambda(Axis axis, double value) { put(lambda_, axis, value); }
    double getNcr(Axis axis) const { return at(ncr_, axis).valueOr(0.0); }
    void setNcr(Axis axis, double value) { put(ncr_, axis, value); }
    double getMRk(Axis axis) const { return at(mRk_, axis).valueOr(0.0); }
    void setMRk(Axis axis, double value) { put(mRk_, axis, value); }
    double getCm(Axis axis) const { return at(cm_, axis).valueOr(0.0); }
    void setCm(Axis axis, double value) { put(cm_, axis, value); }
    kat::Nullable<BucklingCurve> getBucklingCurveCompression(Axis axis) const { return at(curveCompression_, axis); }
    void setBucklingCurveCompression(Axis axis, BucklingCurve curve) { put(curveCompression_, axis, curve); }
    double getInteractionFactor(InteractionFactorkxx k) const { return at(interactionFactor_, k).valueOr(0.0); }
    void setInteractionFactor(InteractionFactorkxx k, double value) { put(interactionFactor_, k, value); }
    kat::Nullable<double> getVbRd(SectionParts part) const { return at(vbRd_, part); }
    void setVbRd(SectionParts part, double value) { put(vbRd_, part, value); }

    // --- optional single values ---------------------------------------------------------------------
    kat::Nullable<BucklingCurve> getBucklingCurveBending() const { return bucklingCurveBending_; }
    void setBucklingCurveBending(BucklingCurve curve) { bucklingCurveBending_ = curve; }
    kat::Nullable<double> getChiLT() const { return chiLT_; }
    void setChiLT(double value) { chiLT_ = value; }
    kat::Nullable<double> getChiLTmod() const { return chiLTmod_; }
    void setChiLTmod(double value) { chiLTmod_ = value; }
    kat::Nullable<double> getChiW() const { return chiW_; }
    void setChiW(double value) { chiW_ = value; }
    kat::Nullable<double> getCorrectionFactor() const { return correctionFactor_; }
    void setCorrectionFactor(double value) { correctionFactor_ = value; }
    kat::Nullable<double> getLambdaW() const { return lambdaW_; }
    void setLambdaW(double value) { lambdaW_ = value; }
    kat::Nullable<double> getPhi() const { return phi_; }
    void setPhi(double value) { phi_ = value; }
    kat::Nullable<double> getReduceFactor() const { return reduceFactor_; }
    void setReduceFactor(double value) { reduceFactor_ = value; }
    kat::Nullable<double> getShearFieldStiffness() const { return shearFieldStiffness_; }
    void setShearFieldStiffness(double value) { shearFieldStiffness_ = value; }
    kat::Nullable<double> getUtilizationShearBuckling() const { return utilizationShearBuckling_; }
    void setUtilizationShearBuckling(double value) { utilizationShearBuckling_ = value; }

    // --- plain single values ------------------------------------------------------------------------
    double getAlpha() const { return alpha_; }
    void setAlpha(double value) { alpha_ = value; }
    double getBeta() const { return beta_; }
    void setBeta(double value) { beta_ = value; }
    double getCriticalMoment() const { return criticalMoment_; }
    void setCriticalMoment(double value) { criticalMoment_ = value; }
    double getLambdaLT0() const { return lambdaLT0_; }
    void setLambdaLT0(double value) { lambdaLT0_ = value; }
    double getLambdaLT() const { return lambdaLT_; }
    void setLambdaLT(double value) { lambdaLT_ = value; }
    double getLcr() const { return lcr_; }
    void setLcr(double value) { lcr_ = value; }
    double getNRk() const { return nRk_; }
    void setNRk(double value) { nRk_ = value; }
    double getZp() const { return zp_; }
    void setZp(double value) { zp_ = value; }
    int getClass() const { return class_; }
    void setClass(int sectionClass) { class_ = sectionClass; }
    ErrorCode getErrorCode() const { return errorCode_; }
    void setErrorCode(ErrorCode code) { errorCode_ = code; }
    ErrorCode getShearBucklingErrorCode() const { return shearBucklingErrorCode_; }
    void setShearBucklingErrorCode(ErrorCode code) { shearBucklingErrorCode_ = code; }

private:
    // The state that reset() restores: the default member initializers below.
    struct ResetTag {};
    explicit BucklingResults(ResetTag) {}

    template <typename T, std::size_t N>
    using Slots = std::array<kat::Nullable<T>, N>;

    template <typename T, std::size_t N, typename Key>
    static kat::Nullable<T> at(const Slots<T, N>& slots, Key key)
    {
        const auto index = static_cast<std::size_t>(static_cast<int>(key));
        return index < N ? slots[index] : kat::Nullable<T>();
    }
    template <typename T, std::size_t N, typename Key>
    static void put(Slots<T, N>& slots, Key key, const T& value)
    {
        const auto index = static_cast<std::size_t>(static_cast<int>(key));
        if (index < N) slots[index] = value;
    }

    Slots<double, utilizationTypeCount> bucklingResistance_;
    Slots<double, utilizationTypeCount> utilization_;
    Slots<double, 2> chi_;
    Slots<double, 2> lambda_;
    Slots<double, 2> ncr_;
    Slots<double, 2> mRk_;
    Slots<double, 2> cm_;
    Slots<BucklingCurve, 2> curveCompression_;
    Slots<double, 4> interactionFactor_;
    Slots<double, 3> vbRd_;
    kat::Nullable<BucklingCurve> bucklingCurveBending_;
    kat::Nullable<double> chiLT_, chiLTmod_, chiW_, correctionFactor_, lambdaW_, phi_, reduceFactor_,
        shearFieldStiffness_, utilizationShearBuckling_;
    double alpha_ = 0.0, beta_ = 0.0, criticalMoment_ = 0.0, lambdaLT0_ = 0.0, lambdaLT_ = 0.0, lcr_ = 0.0,
           nRk_ = 0.0, zp_ = 0.0;
    int class_ = 0;
    ErrorCode errorCode_ = ErrorCode::NoError;
    ErrorCode shearBucklingErrorCode_ = ErrorCode::ShearBucklingNotRequired;
};

// The enumerator's name ("CompressionAxisY", ...), or "" for a value outside 0..8.
STEELDESIGN_API const char* toString(BucklingResults::UtilizationType type);
// "Web", "Flange", "Total", or "".
STEELDESIGN_API const char* toString(BucklingResults::SectionParts part);
// "kyy", "kzz", "kyz", "kzy", or "".
STEELDESIGN_API const char* toString(BucklingResults::InteractionFactorkxx factor);

} // namespace SteelDesign
