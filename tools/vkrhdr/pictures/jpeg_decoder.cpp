#include "pictures/jpeg_decoder.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <jpeglib.h>

#include <jerror.h>

#include "pictures/tool_error.h"

namespace vkr::tool {

namespace {

constexpr int kMaxSide = 16384;         // that a frame of the library may have
constexpr int kMaxScans = 1000;         // no encoder comes near; a small file could keep the decoder busy for hours
constexpr int kFewBytes = 16;           // that some cameras leave before the end mark
constexpr int kMostRows = 4 * DCTSIZE;  // of one channel in a row of minimum coded units

// The decoder's errors and warnings. One that tells of missing picture data ends the decoding like an error.
class JpegErrors : public jpeg_error_mgr {
public:
    JpegErrors()
    {
        jpeg_std_error(this);
        error_exit = [](j_common_ptr pInfo) { Of(pInfo).GiveUp(pInfo); };
        emit_message = [](j_common_ptr pInfo, int nLevel) {
            if (nLevel < 0) Of(pInfo).TakeWarning(pInfo);
        };
        output_message = [](j_common_ptr) {};
    }

    // False when the decoder gave up in fn. It leaves fn by a long jump, so fn must own nothing.
    template <class Fn>
    bool Run(const Fn& fn)
    {
        if (setjmp(m_place) != 0) return false;
        fn();
        return true;
    }

    bool IsCut() const { return m_bCut; }
    const char* Words() const { return m_szWords; }
    int Warnings() const { return m_nWarnings; }

private:
    static JpegErrors& Of(j_common_ptr pInfo) { return *static_cast<JpegErrors*>(pInfo->err); }

    [[noreturn]] void GiveUp(j_common_ptr pInfo)
    {
        format_message(pInfo, m_szWords);
        std::longjmp(m_place, 1);
    }

    void TakeWarning(j_common_ptr pInfo)
    {
        if (msg_code == JWRN_JPEG_EOF) m_bCut = true;
        if (!IsHarmless(pInfo)) GiveUp(pInfo);
        if (m_nWarnings++ == 0) format_message(pInfo, m_szWords);
    }

    bool IsHarmless(j_common_ptr pInfo) const
    {
        switch (msg_code) {
            case JWRN_JPEG_EOF:  // whatever is missing then complains for itself
            case JWRN_ADOBE_XFORM:
            case JWRN_JFIF_MAJOR:
            case JWRN_BOGUS_ICC:
            case JWRN_NOT_SEQUENTIAL:  // fields of a scan that its decoding does not use
                return true;
            case JWRN_EXTRANEOUS_DATA:
                return IsPadding(pInfo);
            default:
                return false;
        }
    }

    // Bytes between the parts of a header are nobody's. Those behind coded data are picture that a wrong bit further up
    // kept from being decoded in its place; before a restart mark there are none, before others few.
    bool IsPadding(j_common_ptr pInfo) const
    {
        const int nBytes = msg_parm.i[0], nMarker = msg_parm.i[1];
        if (reinterpret_cast<j_decompress_ptr>(pInfo)->input_scan_number == 0) return true;
        return (nMarker < JPEG_RST0 || nMarker > JPEG_RST0 + 7) && nBytes <= kFewBytes;
    }

    std::jmp_buf m_place;
    bool m_bCut = false;
    int m_nWarnings = 0;
    char m_szWords[JMSG_LENGTH_MAX] = "";  // of the error, else of the first warning
};

class JpegDecoder {
public:
    JpegDecoder(const Bytes& vBytes, const std::string& sName) : m_vBytes(vBytes), m_sName(sName)
    {
        std::memset(&m_info, 0, sizeof(m_info));
        m_info.err = &m_errors;
    }
    ~JpegDecoder() { jpeg_destroy_decompress(&m_info); }
    JpegDecoder(const JpegDecoder&) = delete;
    JpegDecoder& operator=(const JpegDecoder&) = delete;

    DecodedJpeg Decode();
    std::string Warning() const;

private:
    [[noreturn]] void Refuse(const std::string& sWhy) const { throw BurstError(m_sName + ": " + sWhy); }

    void ReadHeader();
    Bytes ReadProfile();
    void CheckHeader() const;
    void FindSteps(DecodedJpeg& jpeg) const;
    void MakePlanes(DecodedJpeg& jpeg) const;
    void ReadScans();
    void NoteScan();
    void ReadRows(DecodedJpeg& jpeg);
    void ReadPlaneRows(JpegPlane* pPlanes);
    void CheckComplete() const;

    const Bytes& m_vBytes;
    const std::string& m_sName;
    JpegErrors m_errors;
    jpeg_decompress_struct m_info;
    bool m_vHasScan[MAX_COMPONENTS] = {};
    int m_nScans = 0;
};

void JpegDecoder::ReadHeader()
{
    const bool bRead = m_errors.Run([this] {
        jpeg_create_decompress(&m_info);
        jpeg_mem_src(&m_info, m_vBytes.data(), m_vBytes.size());
        jpeg_save_markers(&m_info, JPEG_APP0 + 2, 0xFFFF);
        jpeg_read_header(&m_info, TRUE);
    });
    if (m_errors.IsCut()) Refuse("is cut short, in its header");
    if (!bRead) Refuse(std::string("no usable JPEG: ") + m_errors.Words());
}

// One that is not there whole is none; a warning says so.
Bytes JpegDecoder::ReadProfile()
{
    struct {
        JOCTET* pBytes = nullptr;
        unsigned nSize = 0;
    } profile;
    const bool bRead = m_errors.Run([&] { jpeg_read_icc_profile(&m_info, &profile.pBytes, &profile.nSize); });
    const std::unique_ptr<JOCTET, void (*)(void*)> owner(profile.pBytes, &std::free);
    return bRead && profile.pBytes != nullptr ? Bytes(profile.pBytes, profile.pBytes + profile.nSize) : Bytes();
}

void JpegDecoder::CheckHeader() const
{
    const J_COLOR_SPACE space = m_info.jpeg_color_space;
    if (space == JCS_CMYK || space == JCS_YCCK) Refuse("is a CMYK picture; convert it to RGB first");
    if (space != JCS_YCbCr && space != JCS_GRAYSCALE && space != JCS_RGB) Refuse("no usable JPEG: unknown colours");
    const int nWidth = static_cast<int>(m_info.image_width), nHeight = static_cast<int>(m_info.image_height);
    if (nWidth < 2 || nHeight < 2 || nWidth > kMaxSide || nHeight > kMaxSide) {
        Refuse("is " + std::to_string(nWidth) + "x" + std::to_string(nHeight) +
               " pixels, frames are 2x2 to 16384x16384");
    }
}

// Both chroma channels alike, at the size of luma, half or a quarter of it.
void JpegDecoder::FindSteps(DecodedJpeg& jpeg) const
{
    const jpeg_component_info* pParts = m_info.comp_info;
    const auto step = [](int nChroma, int nLuma) { return 4 * nChroma % nLuma == 0 ? 4 * nChroma / nLuma : 0; };
    jpeg.nStepX = step(pParts[1].h_samp_factor, pParts[0].h_samp_factor);
    jpeg.nStepY = step(pParts[1].v_samp_factor, pParts[0].v_samp_factor);
    const auto isUsed = [](int nStep) { return nStep == 4 || nStep == 2 || nStep == 1; };
    if (!isUsed(jpeg.nStepX) || !isUsed(jpeg.nStepY) || pParts[1].h_samp_factor != pParts[2].h_samp_factor ||
        pParts[1].v_samp_factor != pParts[2].v_samp_factor) {
        Refuse("no usable JPEG: unknown chroma sampling");
    }
}

void JpegDecoder::MakePlanes(DecodedJpeg& jpeg) const
{
    jpeg.nPlanes = m_info.jpeg_color_space == JCS_GRAYSCALE ? 1 : 3;
    if (jpeg.nPlanes == 3) FindSteps(jpeg);
    for (int c = 0; c < jpeg.nPlanes; ++c) {
        const jpeg_component_info& part = m_info.comp_info[c];
        JpegPlane& plane = jpeg.vPlanes[c];
        plane.nWidth = static_cast<int>(part.downsampled_width);
        plane.nStride = static_cast<int>(part.width_in_blocks) * DCTSIZE;
        plane.vSamples.resize(static_cast<size_t>(plane.nStride) * m_info.total_iMCU_rows * part.v_samp_factor *
                              DCTSIZE);
    }
}

void JpegDecoder::NoteScan()
{
    if (++m_nScans > kMaxScans) ERREXIT1(&m_info, JERR_BAD_SCAN_SCRIPT, m_nScans);
    for (int i = 0; i < m_info.comps_in_scan; ++i) m_vHasScan[m_info.cur_comp_info[i]->component_index] = true;
}

// All of a file of several scans, before any of its picture is made: only then it is known whether all is there.
void JpegDecoder::ReadScans()
{
    NoteScan();
    for (int nState = 0; nState != JPEG_REACHED_EOI;) {
        nState = jpeg_consume_input(&m_info);
        if (nState == JPEG_REACHED_SOS) NoteScan();
    }
    jpeg_start_output(&m_info, m_info.input_scan_number);
}

void JpegDecoder::ReadPlaneRows(JpegPlane* pPlanes)
{
    JSAMPROW vRows[3][kMostRows];
    JSAMPARRAY vPlaneRows[3] = {vRows[0], vRows[1], vRows[2]};
    const int nStep = m_info.max_v_samp_factor * DCTSIZE;
    for (int nUnit = 0; m_info.output_scanline < m_info.output_height; ++nUnit) {
        for (int c = 0; c < m_info.num_components; ++c) {
            const int nRows = m_info.comp_info[c].v_samp_factor * DCTSIZE;
            for (int y = 0; y < nRows; ++y) {
                vRows[c][y] =
                    pPlanes[c].vSamples.data() + (static_cast<size_t>(nUnit) * nRows + y) * pPlanes[c].nStride;
            }
        }
        jpeg_read_raw_data(&m_info, vPlaneRows, static_cast<JDIMENSION>(nStep));
    }
}

void JpegDecoder::ReadRows(DecodedJpeg& jpeg)
{
    if (jpeg.nPlanes > 0) return ReadPlaneRows(jpeg.vPlanes);
    while (m_info.output_scanline < m_info.output_height) {
        JSAMPROW pRow = jpeg.rgb.Row(static_cast<int>(m_info.output_scanline));
        jpeg_read_scanlines(&m_info, &pRow, 1);
    }
}

// A scan that ends too early has complained by now; one that never began has not.
void JpegDecoder::CheckComplete() const
{
    if (m_nScans == 0) return;
    const int nParts = m_info.num_components;
    bool bComplete = std::all_of(m_vHasScan, m_vHasScan + nParts, [](bool bHas) { return bHas; });
    if (m_info.progressive_mode) {  // every bit of every coefficient: 0 bits to come
        const int* pBits = m_info.coef_bits[0];
        bComplete = bComplete && std::all_of(pBits, pBits + nParts * DCTSIZE2, [](int nBits) { return nBits == 0; });
    }
    if (!bComplete) Refuse("is cut short: scans of its picture are missing");
}

DecodedJpeg JpegDecoder::Decode()
{
    ReadHeader();
    CheckHeader();
    DecodedJpeg jpeg;
    jpeg.vProfile = ReadProfile();
    jpeg.nWidth = static_cast<int>(m_info.image_width);
    jpeg.nHeight = static_cast<int>(m_info.image_height);
    if (m_info.jpeg_color_space == JCS_RGB) {
        jpeg.rgb.Resize(jpeg.nWidth, jpeg.nHeight, 3);
        m_info.out_color_space = JCS_RGB;
    } else {
        MakePlanes(jpeg);
        m_info.raw_data_out = TRUE;
        m_info.out_color_space = m_info.jpeg_color_space;
    }
    m_info.dct_method = JDCT_ISLOW;
    m_info.buffered_image = jpeg_has_multiple_scans(&m_info);
    const bool bDecoded = m_errors.Run([&] {
        jpeg_start_decompress(&m_info);
        if (m_info.buffered_image) ReadScans();
        ReadRows(jpeg);
        if (m_info.buffered_image) jpeg_finish_output(&m_info);
        while (jpeg_input_complete(&m_info) == FALSE) jpeg_consume_input(&m_info);
    });
    if (!bDecoded && m_errors.IsCut()) Refuse("is cut short: its picture data end too early");
    if (!bDecoded) Refuse(std::string("is damaged: ") + m_errors.Words());
    CheckComplete();
    return jpeg;
}

std::string JpegDecoder::Warning() const
{
    if (m_errors.Warnings() == 0) return "";
    const int nMore = m_errors.Warnings() - 1;
    return m_sName + ": " + m_errors.Words() + (nMore > 0 ? ", and " + std::to_string(nMore) + " more" : "");
}

}  // namespace

DecodedJpeg DecodeJpeg(const Bytes& vBytes, const std::string& sName, std::string& sWarning)
{
    JpegDecoder decoder(vBytes, sName);
    DecodedJpeg jpeg = decoder.Decode();
    sWarning = decoder.Warning();
    return jpeg;
}

}  // namespace vkr::tool
