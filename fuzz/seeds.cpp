// Writes inputs to begin with: fuzz_seeds FOLDER makes FOLDER/TARGET/NAME for each target.

#include "core/kepcore/kep_image3d.h"
#include "tests/core/kepcore/ics_support.h"
#include "tests/core/kepcore/tiff_streams.h"
#include "tests/support/voxel_type.h"

#include <archive.h>
#include <archive_entry.h>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using kep::VoxelType;
using tifftest::TiffBuilder;

const std::vector<std::string> tiffTargets = {"tiff", "tiff_converted", "tiff_frames", "info", "round_trip"};
const std::vector<std::string> icsTargets = {"ics", "ics_frames", "info", "round_trip"};

class Seeds {
public:
    explicit Seeds(std::string to) : folder(std::move(to)) {}

    void Put(const std::vector<std::string>& targets, const std::string& name, const std::string& bytes) const {
        for (const std::string& target : targets) {
            fs::create_directories(folder + "/" + target);
            std::ofstream out(folder + "/" + target + "/" + name, std::ios::binary);
            out << bytes;
            if (!out.flush())
                throw std::runtime_error("cannot write below " + folder);
        }
    }

private:
    std::string folder;
};

/// Small numbers of each type, so that other types can hold them too.
template <typename T>
kep::Image3d<T> MakeFrame() {
    kep::Image3d<T> frame;
    frame.MakeRoom(5, 4, 3);
    std::mt19937 random(7);
    for (T& voxel : frame.GetVoxelData()) {
        const auto level = static_cast<unsigned char>(random() % 200U);
        if constexpr (requires { voxel.red; })
            voxel = {level, static_cast<unsigned char>(level / 2), 7};
        else if constexpr (std::is_same_v<T, bool>)
            voxel = level > 100;
        else
            voxel = static_cast<T>(level);
    }
    frame.SetResolution(kep::Resolution(10.0F, 9.5F, 2.0F));
    frame.SetOffset({1.0F, -2.5F, 0.125F});
    frame.SetDescription({{"author", "somebody"}, {"Software", "a program"}, {"note", "two\nlines"}});
    return frame;
}

template <typename T>
void PutFrames(const Seeds& seeds, const std::string& kind) {
    const ScratchFolder scratch;
    const kep::Image3d<T> frame = MakeFrame<T>();
    for (const bool compress : {false, true})
        for (const char* suffix : {"tif", "ics"}) {
            const std::string file = scratch / (std::string("a.") + suffix);
            frame.SaveImage(file.c_str(), kep::FF_BY_NAME, compress, nullptr);
            const bool isTiff = suffix[0] == 't';
            seeds.Put(isTiff ? tiffTargets : icsTargets, "saved_" + kind + (compress ? "_packed." : ".") + suffix,
                      ReadBytes(file));
        }
}

/// Files of all kinds that ReadImage's own writer does not make.
void PutTiffs(const Seeds& seeds) {
    for (const tifftest::Packing& packing : tifftest::GetPackings())
        for (const auto block : {tifftest::Block::Strip, tifftest::Block::Tile}) {
            const std::string rows = tifftest::PackRows(packing, 32, tifftest::MakeRows(packing, 32, 16));
            const std::string name = packing.name + (block == tifftest::Block::Tile ? " tile" : " strip");
            seeds.Put(tiffTargets, name, tifftest::MakeBlockFile(packing, block, 32, 16, rows));
        }
    const auto put = [&](const std::string& name, const TiffBuilder& file) {
        seeds.Put(tiffTargets, name, file.GetFile());
    };
    using tifftest::Description;
    using tifftest::MakeStack;
    put("stack", MakeStack(4));
    put("stack_big", MakeStack(4, {}, tifftest::Order::Big, tifftest::Kind::Big));
    put("hyperstack", MakeStack(12, Description("ImageJ=1.53t\nimages=12\nchannels=2\nslices=3\nframes=2\nhyperstack="
                                                "true\nmode=grayscale\nunit=micron\nspacing=0.5\nfinterval=2.5\n")));
    put("ome",
        MakeStack(6, Description(
                         "<?xml version=\"1.0\" encoding=\"UTF-8\"?><OME xmlns=\"http://www.openmicroscopy.org/Schemas/"
                         "OME/2016-06\"><Image ID=\"Image:0\" Name=\"a\"><Pixels ID=\"Pixels:0\" DimensionOrder="
                         "\"XYZCT\" Type=\"uint8\" SizeX=\"3\" SizeY=\"2\" SizeZ=\"3\" SizeC=\"2\" SizeT=\"1\" "
                         "PhysicalSizeX=\"0.1\" PhysicalSizeXUnit=\"µm\" PhysicalSizeZ=\"0.5\" TimeIncrement=\"2\">"
                         "<Channel ID=\"Channel:0:0\" Name=\"red\" Color=\"-16776961\" SamplesPerPixel=\"1\"/>"
                         "<Channel ID=\"Channel:0:1\" Name=\"green\"/><TiffData IFD=\"0\" FirstZ=\"0\" FirstC=\"0\" "
                         "FirstT=\"0\" PlaneCount=\"6\"/></Pixels></Image></OME>")));
    put("ome_table",
        MakeStack(2,
                  Description("<OME><Image><Pixels DimensionOrder=\"XYCZT\" Type=\"uint8\" SizeX=\"3\" SizeY=\"2\" "
                              "SizeZ=\"1\" SizeC=\"2\" SizeT=\"1\"><TiffData IFD=\"1\" FirstC=\"0\" PlaneCount=\"1\">"
                              "<UUID FileName=\"input\">urn:uuid:1</UUID></TiffData><TiffData IFD=\"0\" FirstC=\"1\" "
                              "PlaneCount=\"1\"/></Pixels></Image></OME>")));
    put("channels", MakeStack(3, Description("ImageJ=1.53t\nimages=3\nchannels=3\nmode=composite\n")));

    TiffBuilder palette;
    const std::size_t indices = palette.AddNumbers({0, 1, 2, 3, 2, 1}, 1);
    std::vector<std::uint64_t> colours(3 * 256);
    for (std::size_t i = 0; i < colours.size(); ++i)
        colours[i] = i * 80 % 65536;
    auto tags = tifftest::PlainTags(3, 2, 8, indices);
    tags[4].values = {3};
    palette.AddDirectory(tags + std::vector<TiffBuilder::Tag>{{320, 3, colours}});
    put("palette", palette);

    TiffBuilder planes;
    const std::size_t at = planes.AddNumbers({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18}, 1);
    planes.AddDirectory({{256, 4, {3}},
                         {257, 4, {2}},
                         {258, 3, {8, 8, 8}},
                         {259, 3, {1}},
                         {262, 3, {2}},
                         {273, 4, {at, at + 6, at + 12}},
                         {277, 3, {3}},
                         {278, 4, {2}},
                         {279, 4, {6, 6, 6}},
                         {282, 5, {100, 3}},
                         {283, 5, {100, 3}},
                         {284, 3, {2}},
                         {296, 3, {3}}});
    put("planes", planes);

    TiffBuilder odd;
    const std::size_t bits = odd.AddBytes(std::string(64, '\x5A'));
    odd.AddDirectory(tifftest::PlainTags(10, 4, 12, bits));
    put("bits12", odd);
    TiffBuilder half;
    const std::size_t halves = half.AddNumbers({0x3C00, 0x4000, 0x7C00, 0x3555, 0x8001, 0}, 2);
    half.AddDirectory(tifftest::PlainTags(3, 2, 16, halves) + std::vector<TiffBuilder::Tag>{{339, 3, {3}}});
    put("half", half);
}

void PutTiffBlocks(const Seeds& seeds) {
    unsigned char number = 0;
    const unsigned char order[] = {0, 4, 0, 6, 10, 8, 9, 5, 1, 2, 2, 2, 3}; // of the packings in ReadTiffBlock's list
    for (const tifftest::Packing& packing : tifftest::GetPackings()) {
        const std::string rows = tifftest::PackRows(packing, 32, tifftest::MakeRows(packing, 32, 16));
        const char compression = static_cast<char>(order[number++]);
        const char bits = packing.bits == 1 ? 1 : 0;
        for (const char predictor : {'\0', '\1'})
            for (const char flags : {'\0', '\1'}) {
                const auto faxOptions = static_cast<char>(packing.options << 1U);
                const char head[] = {
                    compression, bits, 0, 0, 0, predictor, 31, 15, static_cast<char>(flags | faxOptions)};
                seeds.Put({"tiff_block"}, packing.name + std::to_string(predictor) + std::to_string(flags),
                          std::string(head, sizeof head) + rows);
            }
    }
}

/// Bytes as the old program "compress" packs them.
std::string PackByCompress(const std::string& bytes) {
    std::string packed(4096, '\0');
    std::size_t used = 0;
    archive* const out = archive_write_new();
    archive_write_add_filter_compress(out);
    archive_write_set_format_raw(out);
    archive_write_set_bytes_per_block(out, 1);
    archive_write_open_memory(out, packed.data(), packed.size(), &used);
    archive_entry* const entry = archive_entry_new();
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_entry_set_pathname(entry, "data");
    const bool isWritten =
        archive_write_header(out, entry) == ARCHIVE_OK && archive_write_data(out, bytes.data(), bytes.size()) >= 0;
    archive_entry_free(entry);
    if (archive_write_free(out) != ARCHIVE_OK || !isWritten)
        throw std::runtime_error("libarchive does not pack");
    packed.resize(used);
    return packed;
}

/// Bytes as our own writer packs them behind its header.
std::string PackByGzip(const std::string& bytes) {
    const ScratchFolder scratch;
    kep::Image3d<unsigned char> frame;
    frame.MakeRoom(bytes.size(), 1, 1);
    std::copy(bytes.begin(), bytes.end(), frame.begin());
    const std::string name = scratch / "a.ics";
    frame.SaveImage(name.c_str(), kep::FF_ICS, true, nullptr);
    const std::string file = ReadBytes(name);
    return file.substr(file.find("\nend\n") + 5);
}

void PutIcs(const Seeds& seeds) {
    using ics_test::HeaderText;
    const std::string voxels = ics_test::RandomBytes(96, 3);
    const auto put = [&](const std::string& name, const std::string& bytes) { seeds.Put(icsTargets, name, bytes); };
    put("plain", HeaderText().Text() + voxels);
    put("axes", HeaderText().SetAxes("bits\tch\tt\tz\ty\tx", "8\t2\t2\t2\t3\t4").Text() + voxels);
    put("colours", HeaderText().SetAxes("bits\tx\ty\tch", "8\t8\t4\t3").Text() + voxels);
    put("scale", HeaderText()
                         .Set("parameter\torigin", "0\t1.5\t2\t-3")
                         .Set("parameter\tscale", "1\t0.1\t0.1\t0.5")
                         .Set("parameter\tunits", "bits\tmicrometers\tnm\tmillimeter")
                         .Set("history\tauthor", "somebody")
                         .Set("history\tnote", "a line")
                         .Text() +
                     voxels);
    put("big", HeaderText()
                       .SetAxes("bits\tx\ty", "32\t4\t2")
                       .Set("representation\tformat", "real")
                       .Set("representation\tbyte_order", "4\t3\t2\t1")
                       .Text() +
                   voxels);
    put("complex", HeaderText()
                           .SetAxes("bits\tx\ty", "64\t3\t2")
                           .Set("representation\tformat", "complex")
                           .Set("representation\tbyte_order", "1\t2\t3\t4\t5\t6\t7\t8")
                           .Text() +
                       voxels);
    put("signed", HeaderText().SetAxes("bits\tx\ty", "16\t4\t3").Set("representation\tsign", "signed").Text() + voxels);
    put("source", HeaderText().Set("source\tfile", "0").Set("source\toffset", "12").Text() + voxels);

    const std::string gzip = PackByGzip(voxels);
    const std::string compress = PackByCompress(voxels);
    for (char way = 0; way < 8; ++way)
        seeds.Put({"ics_packed"}, "way" + std::to_string(way), way + (way % 2 == 0 ? gzip : compress));
    seeds.Put({"ics_packed"}, "members", '\0' + PackByGzip(voxels.substr(0, 40)) + PackByGzip(voxels.substr(40)));

    HeaderText pair;
    pair.SetVersion(1).SetAxes("bits\tx\ty\tz", "8\t8\t4\t3");
    seeds.Put({"ics_pair"}, "ids", pair.Text() + "--.ids--\n" + voxels);
    pair.Set("representation\tcompression", "gzip");
    seeds.Put({"ics_pair"}, "packed_ids", pair.Text() + "--.ids--\n" + gzip);
    seeds.Put({"ics_pair"}, "ids_gz", pair.Text() + "--.ids.gz--\n" + gzip);
    seeds.Put({"ics_pair"}, "ids_z", pair.Text() + "--.ids.Z--\n" + compress);
    HeaderText second;
    second.SetAxes("bits\tx\ty\tz", "8\t8\t4\t3").Set("source\tfile", "pair.ids").Set("source\toffset", "0");
    seeds.Put({"ics_pair"}, "source", second.Text() + "--.ids--\n" + voxels);
}

void PutTexts(const Seeds& seeds) {
    std::string pose;
    for (int i = 0; i < 34; ++i)
        pose += std::to_string(i % 5 == 1 ? 1.0 : 0.25 * i) + " ";
    seeds.Put({"view_file"}, "pose", pose);
    seeds.Put({"view_file"}, "odd", "1e30 nan -inf 0x1p-3 5 abc");
    for (char type = 0; type < 4; ++type)
        seeds.Put({"stretch"}, "type" + std::to_string(type), type + ics_test::RandomBytes(200, 5));
    seeds.Put({"names"}, "sequence", "t2.tif\nt1.tif\nt10.tif\nt02.tif\nb.tif\n007\n7\n07\n");
    seeds.Put({"names"}, "template", "frameXXX.png\n");
    seeds.Put({"histogram"}, "bytes", "unsigned char\n8 2 5 \n0 7\n1 2 3 4 ");
    seeds.Put({"histogram"}, "words", "unsigned short\n300 0 2 \n0 65535\n1 2000 3 ");
    seeds.Put({"histogram"}, "ints", "int\n16 1 2 \n-5 70000\n99 18446744 ");
    seeds.Put({"histogram"}, "floats", "float\r\n9 0 1 \r\n-1.5e-3 2.25\r\n1 2 ");
    seeds.Put({"palette"}, "colours", "255 0 0\n0,255,0\n0:0:255 blue\n");
    seeds.Put({"palette"}, "utf16",
              std::string("\xFF\xFE"
                          "1\0 \0"
                          "2\0 \0"
                          "3\0\n\0",
                          14));
    seeds.Put({"configuration"}, "mapping",
              "RGBMAP_STRETCH_MODE=6\nRGBMAP_PERCENTIL_VALUE=0.25\nRGBMAP_MIN_RED=1\nRGBMAP_MAX_GREEN=99999999999\n"
              "RGBMAP_SHOW_BLUE=0\nRGBMAP_THRES_RMIN=11\nRGBMAP_THRES_GMAX=92\nRGBMAP_LEVELS_IMIN_RED=21\n"
              "RGBMAP_LEVELS_IGAMMA_RED=1.5\nRGBMAP_LEVELS_OMAX_RED=250\n");
    seeds.Put({"configuration"}, "program",
              "[Window]\nMaximized=0\nX=10\nY=-5\nWidth=800\nHeight=600\n[Recent/1]\nFile1=/a/b.tif\nFile2=\"/a/c "
              "\\\\d.tif\"\n"
              "[Recent/2]\nFile1=/x/$HOME.ics\n# comment\n");
    seeds.Put(
        {"command_line"}, "show",
        "--type\ngray16\n--channels\n1,3,2\n--resolution\n10,9.5,0.25\n--stretch\npercentil\na.tif\n--labels\nb.tif");
    seeds.Put({"command_line"}, "save",
              "--save-gallery\nf.png\n--slices\n0:20:4\n--rows\n1\n--frames\n1:3\n--spacing\n5\n--\n-a.tif");
    seeds.Put({"command_line"}, "view", "--save-view\nvXX.png\n--windows\nxy,xz\n--border\n3\n--frames\n0:2:1\na.tif");
    seeds.Put({"command_line"}, "film", "--save-film\nf.avi\n--fps\n12\n--force\na.tif");
    seeds.Put({"command_line"}, "meshes", "--export-meshes\ncell\n--close-meshes\n--labels\nl.tif\n--components");
    seeds.Put({"command_line"}, "info", "--info\n--json\n--verbose\na.tif\n--version");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "fuzz_seeds FOLDER\n");
        return 2;
    }
    try {
        const Seeds seeds(argv[1]);
        for (int type = 0; type < static_cast<int>(VoxelType::Other); ++type)
            VisitVoxelType(static_cast<VoxelType>(type),
                           [&]<typename T>() { PutFrames<T>(seeds, "type" + std::to_string(type)); });
        PutTiffs(seeds);
        PutTiffBlocks(seeds);
        PutIcs(seeds);
        PutTexts(seeds);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "fuzz_seeds: %s\n", error.what());
        return 1;
    }
    return 0;
}
