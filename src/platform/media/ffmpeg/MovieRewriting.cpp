#include "platform/base/Causes.h"
#include "platform/base/Result.h"
#include "platform/media/MediaModule_p.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"
#include "platform/media/ffmpeg/FilmWriting_p.h"
#include "platform/media/ffmpeg/H264Encoder_p.h"
#include "platform/media/ffmpeg/MovieFile_p.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

namespace lamina {

namespace {

struct CloseInput {
    void operator()(AVFormatContext* container) const { avformat_close_input(&container); }
};
using Input = std::unique_ptr<AVFormatContext, CloseInput>;

Input openFragments(const std::string& path)
{
    AVFormatContext* opened = nullptr;
    const std::string url = "file:" + path;
    if (avformat_open_input(&opened, url.c_str(), av_find_input_format("mov"), nullptr) < 0)
        return {};
    Input input(opened);
    return avformat_find_stream_info(opened, nullptr) < 0 ? Input() : std::move(input);
}

bool copySideData(const AVStream& from, AVStream& to)
{
    std::size_t size = 0;
    const std::uint8_t* matrix = av_stream_get_side_data(&from, AV_PKT_DATA_DISPLAYMATRIX, &size);
    if (!matrix)
        return true;
    std::uint8_t* copy = av_stream_new_side_data(&to, AV_PKT_DATA_DISPLAYMATRIX, size);
    if (copy)
        std::memcpy(copy, matrix, size);
    return copy != nullptr;
}

Outcome addTracks(MovieFile& film, const AVFormatContext& fragments)
{
    for (unsigned i = 0; i < fragments.nb_streams; ++i) {
        const AVStream& from = *fragments.streams[i];
        AVStream* to = film.reserveTrack();
        if (!to || avcodec_parameters_copy(to->codecpar, from.codecpar) < 0 || !copySideData(from, *to))
            return Error{{}, cause::kNoMemory};
        to->codecpar->codec_tag = 0;
        to->time_base = from.time_base;
        to->avg_frame_rate = from.avg_frame_rate;
    }
    return film.begin();
}

} // namespace

Outcome rewriteMovie(const std::string& fragments, const FilmSettings& settings)
{
    const Input input = openFragments(fragments);
    Result<std::unique_ptr<MovieFile>> film = MovieFile::open(settings);
    if (!input || !film)
        return film ? Error{{}, cause::kCantEncode} : film.error();
    Outcome outcome = addTracks(**film, *input);
    while (outcome) {
        Packet packet(av_packet_alloc());
        const int error = packet ? av_read_frame(input.get(), packet.get()) : AVERROR(ENOMEM);
        if (error == AVERROR_EOF)
            return (*film)->finish();
        if (error < 0)
            return (*film)->failure(error);
        const int index = packet->stream_index;
        const AVRational unit = input->streams[index]->time_base;
        packet->pos = -1;
        outcome = (*film)->write(std::move(packet), unit, (*film)->track(index));
    }
    return outcome;
}

} // namespace lamina
