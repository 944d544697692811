#include "MomentDistribution.h"

#include <utility>

namespace SteelDesign {

MomentDistribution::MomentDistribution(std::vector<double> momentValuesY, MomentDiagram diagramY,
                                       std::vector<double> momentValuesZ, MomentDiagram diagramZ,
                                       double maxMomentValue, ApplicationPoint applicationPoint, double mcr)
    : momentValuesY_(std::move(momentValuesY)), momentValuesZ_(std::move(momentValuesZ)),
      applicationPoint_(applicationPoint), mcr_(mcr), diagramY_(diagramY), diagramZ_(diagramZ),
      maxMomentValue_(maxMomentValue)
{
}

} // namespace SteelDesign
