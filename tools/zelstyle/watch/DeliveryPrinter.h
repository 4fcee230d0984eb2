// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace zel::tool {

struct Delivery;
class Output;

/// How deliveries are written.
enum class DeliveryFormat { Plain, Colored, Json };

/// Writes one delivery as one line.
void printDelivery(const Delivery& delivery, DeliveryFormat format, Output& output);

} // namespace zel::tool
