#pragma once

#include <Qel/Exception/Exception.h>
#include <Qel/Mox2/Model.h>

/// The library's names as an application would shorten them.
namespace Api {

using Qel::Mox2::Array1d;
using Qel::Mox2::Array2d;
using Qel::Mox2::Attributes;
using Qel::Mox2::DatasetType;
using Qel::Mox2::Model;
using Qel::Mox2::NodeProperties;
using Qel::Mox2::NodeType;
using Qel::Mox2::PropertyType;
using Qel::Mox2::SaverOptions;
using Qel::Mox2::Step;
using Qel::Mox2::StepList;

using enum Qel::Mox2::DatasetType;
using enum Qel::Mox2::NodeType;
using enum Qel::Mox2::PropertyType;

} // namespace Api
