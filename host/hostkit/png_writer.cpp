// SPDX-License-Identifier: MIT
#include "hostkit/png_writer.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include <png.h>

#include "hostkit/error.h"

namespace hostkit {
namespace {

struct CloseFile {
    void operator()(std::FILE *file) const { std::fclose(file); }
};

[[noreturn]] void failWriting(const std::string &path, const char *reason) {
    throw MediaError("cannot write " + inQuotes(path) + ": " + reason);
}

/// libpng reports by a function that may not return; throwing through its C frames is not allowed everywhere, so the
/// message is kept and libpng's own jump is taken. Nothing with a destructor lives between setjmp and the calls.
struct PngFailure {
    char text[160] = "";
};

void keepMessage(png_structp png, png_const_charp message) {
    auto *failure = static_cast<PngFailure *>(png_get_error_ptr(png));
    std::snprintf(failure->text, sizeof failure->text, "%s", message);
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

bool writeRows(std::FILE *file, int width, int height, png_bytepp rows, PngFailure &failure) {
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &failure, keepMessage, ignoreWarning);
    png_infop info = png == nullptr ? nullptr : png_create_info_struct(png);
    if (info == nullptr) {
        png_destroy_write_struct(&png, nullptr);
        std::snprintf(failure.text, sizeof failure.text, "out of memory");
        return false;
    }
    if (setjmp(png_jmpbuf(png)) != 0) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_init_io(png, file);
    // Photographs get little smaller by more effort, and nobody waits longer for a contact sheet than for its clip.
    png_set_compression_level(png, 2);
    png_set_filter(png, 0, PNG_FILTER_SUB | PNG_FILTER_UP);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_write_image(png, rows);
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return true;
}

void writeFile(const std::string &path, int width, int height, std::vector<std::uint8_t *> &rows) {
    std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "wb"));
    if (!file)
        failWriting(path, std::strerror(errno));
    PngFailure failure;
    if (!writeRows(file.get(), width, height, rows.data(), failure))
        failWriting(path, failure.text);
    // The last bytes reach the disk when the file is closed: a full disk shows here.
    if (std::fclose(file.release()) != 0)
        failWriting(path, std::strerror(errno));
}

} // namespace

void writePng(const std::string &path, const Image &image) {
    if (image.empty())
        failWriting(path, "the picture is empty");
    const auto rowBytes = static_cast<std::size_t>(image.width()) * 3;
    std::vector<std::uint8_t> rgb(rowBytes * static_cast<std::size_t>(image.height()));
    std::vector<std::uint8_t *> rows;
    for (int y = 0; y < image.height(); ++y) {
        rows.push_back(rgb.data() + static_cast<std::size_t>(y) * rowBytes);
        const std::uint8_t *source = image.row(y);
        for (std::uint8_t *target = rows.back(); target != rows.back() + rowBytes; target += 3, source += 4) {
            target[0] = source[2];
            target[1] = source[1];
            target[2] = source[0];
        }
    }
    writeFile(path, image.width(), image.height(), rows);
}

} // namespace hostkit
