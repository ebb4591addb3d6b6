// SPDX-License-Identifier: MIT
#pragma once

#include <string>

struct AVCodec;
struct AVCodecContext;

namespace hostkit {

/// What results are encoded as.
struct VideoCodec {
    const char *name;
    const char *encoders[2]; ///< by preference; hardware encoders are left out: they differ from machine to machine
    const char *muxer;
    const char *extension;

    /// The first encoder that this machine has, or null.
    const AVCodec *encoder() const;
};

/// "h264" or "vp9"; std::invalid_argument for another name.
const VideoCodec &videoCodec(const std::string &name);
/// The wanted codec if this machine can encode it, else the other. Throws MediaError when it can encode neither.
std::string usableCodec(const std::string &wanted);

/// Visually transparent at a speed that does not dominate the job.
void setQuality(AVCodecContext &encoder);

} // namespace hostkit
