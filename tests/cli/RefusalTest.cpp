#include "CommandLines.h"

#include <algorithm>
#include <cstddef>
#include <gmock/gmock.h>
#include <vector>

namespace lamina::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

#if defined(__SANITIZE_ADDRESS__)
constexpr long kMemoryLimitKilobytes = 2'000'000; // shadow memory and quarantine come on top
#else
constexpr long kMemoryLimitKilobytes = 300'000;
#endif

struct Refusal {
    std::string line;
    int exitCode;
    std::string message; ///< somewhere behind "lamina: "
};

class Refusals : public CommandLines {
protected:
    /// What all have in common: the cause in a line, nothing written, no memory taken.
    void expect(const std::vector<Refusal>& refusals, const CommandOptions& options = {}) const
    {
        for (const Refusal& refusal : refusals) {
            SCOPED_TRACE(refusal.line);
            const std::vector<std::string> before = folder.names();
            const CommandResult run = shell("lamina " + refusal.line, options);
            EXPECT_EQ(run.exitCode, refusal.exitCode);
            EXPECT_THAT(run.errors, StartsWith("lamina: "));
            const std::size_t line = run.errors.find('\n');
            EXPECT_THAT(run.errors.substr(0, line), HasSubstr(refusal.message));
            const std::string rest = line < run.errors.size() ? run.errors.substr(line + 1) : "no line";
            EXPECT_TRUE(rest.empty() || (refusal.exitCode == 2 && rest.starts_with("Run 'lamina "))) << rest;
            EXPECT_EQ(run.output, "");
            EXPECT_LT(run.peakKilobytes, kMemoryLimitKilobytes);
            EXPECT_EQ(folder.names(), before);
        }
    }
    void make(const std::string& name, const std::string& content) const { writeFile(folder.path(name), content); }
};

TEST_F(Refusals, WrongUsageOfAnyCommand)
{
    expect({
        {"--screen nowhere", 2, "--screen"},
        {"blur no.jpg", 2, "blur: is neither a subcommand nor a photo"},
        {"small.png no.jpg", 2, "no.jpg: is neither a subcommand nor a photo"},
        {"small.png stickers", 2, "small.png: stands before the subcommand"},
        {"collage no.jpg -o out.png", 2, "P2 is required"},
        {"collage no.jpg no.jpg", 2, "--output is required"},
        {"collage - no.jpg - -o out.png", 2, "collage: standard input can be only one of the photos"},
        {"collage no.jpg no.jpg -o out.png --layout 3004", 2, "collage: layout 3004 is for three photos, two were"},
        {"collage no.jpg no.jpg no.jpg -o out.png --layout 2000", 2, "layout 2000 is for two photos, three were given"},
        {"collage no.jpg no.jpg -o out.png --swap 1:3", 2, "collage: there is no photo 3: two were given"},
        {"collage no.jpg no.jpg -o out.png --move 3:1,1", 2, "collage: there is no photo 3: two were given"},
        {"collage no.jpg no.jpg -o out.png --as svg", 2, "collage: out.png: the name of the output must end in .svg"},
        {"stickers sun", 2, "sun"},
        {"blend", 2, "FIRST is required"},
        {"blend no.jpg no.jpg", 2, "--output is required"},
        {"blend no.jpg no.jpg -o out.webp", 2, "blend: out.webp: the name of the output must end in .png, .jpg"},
        {"blend no.jpg no.jpg -o out.png --sideways", 2, "--sideways"},
        {"blend - - -o out.png", 2, "blend: standard input can be only one of the photos"},
        {"op", 2, "op: name at least one operation"},
        {"op invert -o out.png", 2, "op: --input is required"},
        {"op invert -i no.png", 2, "op: --output is required"},
        {"op invert -i no.png -o out", 2, "out: the name of the output must end in"},
        {"op maskWithImage=- -i - -o out.png", 2, "op: standard input can be only one of the pictures"},
        {"op invert --each no.png a.png -o out.png", 2, "out.png: is one name for 2 pictures"},
        {"op invert --each no.png -o out/{nam}.png", 2, "there is no '{nam}'; there are {name}, {extension} and"},
        {"op invert --each no.png -o {name}/a.png", 2, "{name} may stand in the name of the file alone"},
        {"op invert --each no.png -o -", 2, "op: many pictures can't go to standard output"},
        {"op invert --each - no.png -o {name}.png", 2, "-: standard input can't be one of many pictures"},
        {"op invert --each no.png -i a.png -o {name}.png", 2, "--input: is one picture"},
        {"op invert --each no.webp -o out/{name}.{extension}", 2, "out/no.webp: the name of the output must end in"},
        {"op maskWithImage=- --from - -o {name}.png", 2, "op: standard input can be only one of the list and the"},
        {"op invert --each a/no.png b/no.jpg -o x/{name}.png", 2, "b/no.jpg: would write x/no.png, as a/no.png does"},
        {"op invert --each ./-.jpg -o {name}", 2, "./-: the name of the output must end in"},
        {"op invert --each flat.png small.png -o flat.png", 2, "flat.png: is one name for 2 pictures"},
        {"op invert --each a/small.png b/flat.jpg ./flat.png -o {name}.png", 2, "b/flat.jpg: would replace ./flat.png"},
        {"op invert -i no.png -o out.png --shard 1/2", 2, "--shard: is a part of many pictures"},
        {"op invert --each no.png -o {name}.png --shard 0/4", 2, "--shard: expected K/N with K from 1 to N, as in 2/4"},
        {"op invert --each no.png -o {name}.png --shard 5/4", 2, "not '5/4'"},
        {"op invert --from no.txt -o {name}.png", 3, "no.txt: no such file"},
        {"op maskWithImage=no.png --each small.png -o {name}.jpg", 3, "no.png: no such file"},
        {"op invert --each small.png -o a/b/{name}.png", 4, "a/b: no such folder"},
        {"filter GPUImageSepiaFilter --each no.png -i no.png -o {name}.png", 2, "needs 1 picture, 2 were given"},
        {"filter -i no.png -o out.png", 2, "filter: name one filter, or a chain with --pipeline"},
        {"filter GPUImageSepiaFilter --pipeline no.json", 2, "filter: name one filter, or a chain with --pipeline"},
        {"filter GPUImageSepiaFilter -o out.png", 2, "GPUImageSepiaFilter needs 1 picture, none was given"},
        {"filter GPUImageLookupFilter -i no.png", 2, "GPUImageLookupFilter needs 2 pictures, 1 was given"},
        {"filter GPUImageSepiaFilter -i no.png", 2, "filter: --output is required"},
        {"filter GPUImageSepiaFilter -i no.png -o out.webp", 2, "out.webp: the name of the output must end in"},
        {"filter GPUImageLookupFilter -i - -i - -o out.png", 2, "standard input can be only one of the pictures"},
        {"filter --pipeline no.json -i no.png -i no.png", 2, "a pipeline needs 1 picture, 2 were given"},
        {"filter --pipeline no.json --set intensity=1 -i no.png -o out.png", 2, "--set: sets a property of one filter"},
        {"filter GPUImageSolidColorGenerator -o out.png", 2, "needs a picture or --size WxH, neither was given"},
        {"filter GPUImageSolidColorGenerator --size 6x4 -i no.png", 2, "--size: a picture gives its own size"},
        {"filter GPUImageSepiaFilter --size 6x4", 2, "--size: is for generators; GPUImageSepiaFilter needs 1 picture"},
        {"filter --pipeline no.json --size 6x4", 2, "--size: is for a generator; a pipeline draws its picture"},
        {"filter GPUImageSepiaFilter -i no.png --report", 2, "GPUImageSepiaFilter: finds nothing to report"},
        {"filter GPUImageLuminosity -i no.png --report -o -", 2, "--report: goes to standard output, as the picture"},
        {"filter --pipeline no.json -i no.png --report", 2, "--report: tells what one filter finds"},
        {"filter GPUImageLuminosity -i no.png", 2, "filter: --output is required"},
        {"filters Sepai", 2, "Sepai: there is no such filter; did you mean GPUImageSepiaFilter? lamina filters lists"},
        {"filters GPUImageSepiaFilter --markdown", 2, "filters: the page holds all filters"},
        {"filters --json --markdown", 2, "excludes"},
        {"filters -i no.png", 2, "filters: --input is for a --sheet"},
        {"filters --family blur", 2, "filters: --family is for a --sheet"},
        {"filters --sheet out.png", 2, "--sheet: needs a photo by --input, and at most one more picture"},
        {"filters --sheet out.png -i a.png -i b.png -i c.png", 2, "--sheet: needs a photo by --input, and at most"},
        {"filters --sheet out.png -i - -i -", 2, "filters: standard input can be only one of the pictures"},
        {"filters --sheet out.webp -i no.png", 2, "out.webp: the name of the output must end in"},
        {"filters --sheet out.png -i no.png --json", 2, "--sheet: is a picture of all filters: leave out"},
        {"filters GPUImageSepiaFilter --sheet out.png -i no.png", 2, "--sheet: is a picture of all filters"},
        {"filters --sheet out.png -i no.png --family blurr", 2, "blurr: there is no such family; did you mean blur?"},
        {"export", 2, "export: name a type: jpg, png"},
        {"export pdf -i no.png -o out.pdf", 2, "pdf: there is no such type; did you mean pdf-"},
        {"export png -o out.png", 2, "export: --input is required"},
        {"export png -i no.png", 2, "export: --output is required"},
        {"export png -i no.png -o out.jpg", 2, "out.jpg: the name of the output must end in .png"},
        {"export jpg -i no.png -o -", 2, "-: an export is a file: name one, or a folder"},
        {"export tiff -i no.png -o out.tiff --size 2", 2, "--size: is no option of tiff"},
        {"blend no.jpg no.jpg -o out.png --notes", 2, "--notes: is for --as TYPE"},
        {"movie", 2, "movie: name a movie"},
        {"movie - -o out.mp4", 2, "-: a movie is read from a file: name one"},
        {"movie no.mp4", 2, "movie: --output is required"},
        {"movie no.mp4 -o out.avi", 2, "out.avi: the name of the output must end in .mp4, .mov or .mkv"},
        {"movie no.mp4 -o -", 2, "-: a movie is a file: name one"},
        {"movie no.mp4 -o out.mp4 --set intensity=1 --filter GPUImageSepiaFilter", 2, "--set: sets a property of the"},
        {"movie no.mp4 -o out.mp4 --filter GPUImageLookupFilter", 2, "GPUImageLookupFilter: needs 2 pictures; frames"},
        {"movie no.mp4 -o out.mp4 --filter GPUImageSepiaFilter --pipeline no.json", 2,
         "--filter: a pipeline's filters"},
        {"movie no.mp4 -o out.mp4 --from 3 --to 3", 2, "--to: must be later than where the movie begins"},
        {"capture", 2, "capture: --output is required, or --list"},
        {"capture -o out.avi", 2,
         "out.avi: the name of the output must end in .mp4, .mov or .mkv for a clip, or in .png"},
        {"capture -o out.png --for 3", 2, "--for: is for clips"},
        {"capture -o - --json", 2, "--json: goes to standard output, as the picture would"},
        {"capture --list -o out.png", 2, "--list: only lists; leave out --output"},
        {"capture -o out.mp4 --filter GPUImageAddBlendFilter", 2, "needs 2 pictures; frames come one at a time"},
        {"capture -o out.mp4 --rate 0", 2, "--rate: expected a number from 1 to 1000, not '0'"},
        {"blend no.jpg no.jpg -o out.png --as svg", 2, "blend: out.png: the name of the output must end in .svg"},
    });
}

TEST_F(Refusals, ValuesThatAreNotUnderstood)
{
    const std::string blend = "blend no.jpg no.jpg -o out.png ";
    const std::string collage = "collage no.jpg no.jpg no.jpg -o out.png ";
    const std::string filter = "filter GPUImageSepiaFilter -i no.png -o out.png --set ";
    expect({
        {blend + "--crop1 7,0,0", 2, "--crop1: expected ZOOM,X,Y with a zoom from 1 to 6, as in 2,100,40, not '7,0,0'"},
        {blend + "--crop1 0.5,0,0", 2, "a zoom from 1 to 6"},
        {blend + "--crop2 1,0", 2, "ZOOM,X,Y"},
        {blend + "--crop2 nan,0,0", 2, "ZOOM,X,Y"},
        {collage + "--layout 2999", 2, "--layout: expected a layout, 2000 to 2007 for two photos or 3000 to 3009 for"},
        {collage + "--layout 3e3", 2, "expected a layout"},
        {collage + "--height 4", 2, "--height"},
        {collage + "--move 20,-10", 2,
         "--move: expected N:DX,DY in points with a photo 1 to 3, as in 2:20,-10, not '20"},
        {collage + "--zoom 4:2", 2, "--zoom: expected N:S, a factor above 0 with a photo 1 to 3, as in 2:1.5"},
        {collage + "--rotate 1:nan", 2, "--rotate: expected N:DEG with a photo 1 to 3"},
        {collage + "--flip 0:vertical", 2, "expected N:horizontal or N:vertical with a photo 1 to 3"},
        {collage + "--filter 1:514", 2, "--filter: there is no filter '514'; did you mean"},
        {collage + "--filter 1:sepai", 2, "there is no filter 'sepai'; did you mean Sepia?"},
        {collage + "--effect 1:contrast", 2, "--effect: expected N:NAME=V with a photo 1 to 3, as in 2:contrast=40"},
        {collage + "--effect 2:contrst=3", 2, "there is no effect 'contrst'; did you mean contrast?"},
        {collage + "--effect 2:saturation=3", 2, "expected saturation from 0 to 2, not '2:saturation=3'"},
        {collage + "--effect '2:border width=3'", 2, "there is no effect 'border width'"},
        {collage + "--opacity 2:1.1", 2, "expected N:V with a photo 1 to 3 and a value from 0 to 1, as in 2:0.7"},
        {collage + "--background 2:d81159", 2, "expected N:#RRGGBB with a photo 1 to 3"},
        {collage + "--swap 2:2", 2, "--swap: expected N:M, two photos 1 to 3, as in 1:2, not '2:2'"},
        {collage + "--border 4,white", 2, "--border: expected W[,#RRGGBB] in points from 0 to"},
        {collage + "--gap -1", 2, "--gap: expected W in points from 0 to"},
        {collage + "--sticker moon@1", 2, "--sticker: expected NAME@CX,CY"},
        {collage + "--reset now", 2, "now"},
        {collage + "--reset=false", 2, "reset was given a disallowed flag override"},
        {blend + "--zoom 0", 2, "--zoom: expected a factor above 0, as in 1.5, not '0'"},
        {blend + "--zoom inf", 2, "above 0"},
        {blend + "--move '1;2'", 2, "--move: expected DX,DY in points, as in 20,-10, not '1;2'"},
        {blend + "--turn 3:left", 2, "--turn: expected N:left or N:right with a photo 1 or 2, as in 2:left, not '3:l"},
        {blend + "--flip 1:left", 2, "--flip: expected N:horizontal or N:vertical with a photo 1 or 2, as in 2:ho"},
        {blend + "--contrast 1:200.5", 2, "--contrast: expected N:V with a photo 1 or 2 and a value from -200 to 200"},
        {blend + "--brightness 2", 2, "--brightness: expected N:V"},
        {blend + "--opacity 2:0", 2, "a value from 0.1 to 1, as in 2:0.7, not '2:0'"},
        {blend + "--sticker sun@1,2,3", 2, "--sticker: expected NAME@CX,CY[,W,H[,DEGREES]] with sides from 37 to 4096"},
        {blend + "--sticker sun@1,2,36,50", 2, "not 'sun@1,2,36,50'"},
        {blend + "--sticker sun@1,2,50,50,nan", 2, "NAME@CX,CY"},
        {blend + "--sticker sun", 2, "NAME@CX,CY"},
        {blend + "--width 15.9", 2, "--width: expected a number from 16 to 2048, not '15.9'"},
        {blend + "--scale 17", 2, "--scale: expected a number from 1 to 16, not '17'"},
        {blend + "--width 2000 --scale 16", 2, "must not exceed 8192 pixels"},
        {"op invert -i no.png -o out.png --picture-scale 0", 2, "expected a number from 0.01 to 100, not '0'"},
        {"export jpg -i no.png -o . --quality 2", 2, "--quality: expected a number from 0.1 to 1, not '2'"},
        {"export mp4 -i no.png -o . --quality best", 2, "low, medium, high or a number from 0.2 to 1.5, not 'best'"},
        {"movie no.mp4 -o out.mp4 --from -1", 2, "--from: expected a number from 0 to 360000, not '-1'"},
        {"movie no.mp4 -o out.mp4 --size 640", 2, "--size: expected a size in whole pixels, as in 640x480, not '640'"},
        {"movie no.mp4 -o out.mp4 --size 9000x9000", 2, "--size: a movie has at most 36864 blocks of 16 x 16 pixels"},
        {"movie no.mp4 -o out.mp4 --quality best", 2, "--quality: expected low, medium, high or a number from 0.2 to"},
        {"export png -i no.png -o . --size 3", 2, "--size: expected a number from 0.5 to 2.5, not '3'"},
        {"export pdf-print -i no.png -o . --ppi 0", 2, "--ppi: expected a number from 1 to 4800, not '0'"},
        {"export pdf-print -i no.png -o . --profile lab", 2, "--profile: lab not in {rgb,cmyk}"},
        {"op rotateInDegrees", 2, "DEGREES is missing; usage: rotateInDegrees=DEGREES, as in rotateInDegrees=90"},
        {"op rotateInDegrees=", 2,
         "rotateInDegrees=: DEGREES must be a number, not ''; usage: rotateInDegrees=DEGREES"},
        {"op brightenWithValue=1e39", 2, "VALUE must be a number"},
        {"op brightenWithValue=1,2", 2, "too many arguments; usage: brightenWithValue=VALUE"},
        {"op invert=1", 2, "too many arguments; usage: invert"},
        {"op embossWithBias=2147483648", 2, "BIAS must be a whole number"},
        {"op rotateInRadians=1,2", 2, "MIRRORX must be 0 or 1, not '2'"},
        {"op cropToSize=-5x5", 2, "WxH must be two numbers above 0 with an x between"},
        {"op scaleToFitSize=1x1e39", 2, "WxH must be"},
        {"op scaleByFactor=0", 2, "FACTOR must be a number above 0"},
        {"op reflectedImageWithHeight=4294967296,1,0", 2, "HEIGHT must be"},
        {"op maskWithImage=", 2, "FILE must be a file"},
        {filter + "intensity", 2, "intensity: a setting is PROPERTY=VALUE"},
        {filter + "intensity=full", 2, "intensity=full: intensity must be a number, not 'full', as in intensity=1"},
        {"filter GPUImageMonochromeFilter --set color=1,2,3", 2, "color must be a vector written A,B,C,D, not '1,2,3'"},
        {"filter GPUImageErosionFilter --set radius=1.5", 2, "radius must be an integer in pixels, not '1.5'"},
        {"filter GPUImageLevelsFilter --set setMin=0,1", 2,
         "setMin=0,1: setMin:gamma:max:minOut:maxOut: takes 5 values, "},
        {"filter GPUImageLevelsFilter --set setRedMin=0,1,x,0,1", 2, "max must be a number, not 'x', as in setRedMin:"},
        {"filter GPUImageSolidColorGenerator --size 6x0 -o out.png", 2,
         "a size in whole pixels, as in 640x480, not '6x0'"},
        {"filter GPUImageSolidColorGenerator --size x6x4 -o out.png", 2, "not 'x6x4'"},
        {"filter GPUImageHSBFilter --set rset", 2, "GPUImageHSBFilter has no property 'rset'; did you mean reset?"},
        {"filter GPUImageHSBFilter --set reset=1", 2, "reset takes 0 values, not 1, as in reset"},
        {"filter GPUImageSkinToneFilter --set upperSkinToneColor=0", 2, "must be green or orange, not '0', as in"},
        {"filter GPUImageToneCurveFilter --set 'redControlPoints=0,0;1'", 2, "must be points written X,Y;X,Y;..., not"},
        {"filter GPUImageToneCurveFilter --set pointsWithACVURL=", 2,
         "must be a file, not '', as in pointsWithACVURL=FILE"},
        {"filter GPUImageColorMatrixFilter --set 'colorMatrix=1,0;0,1'", 2, "colorMatrix must be a matrix4 written"},
    });
}

TEST_F(Refusals, UnknownNamesSuggestTheNearest)
{
    const std::string pasted(100'000, 'x');
    expect({
        {"op rotateInDegres=90", 2, "there is no operation 'rotateInDegres'; did you mean rotateInDegrees?"},
        {"op blur", 2, "did you mean gaussianBlurWithBias?"},
        {"op scale=2", 2, "did you mean scaleToSize?"},
        {"op sepai", 2, "did you mean sepia?"},
        {"blend a b -o c.png --sticker snu@1,2", 2,
         "--sticker: there is no sticker 'snu'; did you mean Sun? lamina st"},
        {"blend a b -o c.png --sticker big118@1,2", 2, "did you mean big11"},
        {"op =5", 2, "an operation is NAME"},
        {"op " + pasted, 2, "'" + pasted.substr(0, 60) + "...'; did you mean"},
        {"filter sepia", 2, "sepia: there is no such filter; did you mean GPUImageSepiaFilter?"},
        {"filter GPUImageSepiaFilter --set intensty=1", 2, "no property 'intensty'; did you mean intensity?"},
        {"filter GPUImageGrayscaleFilter --set a=1", 2, "GPUImageGrayscaleFilter has no properties to set"},
    });
}

TEST_F(Refusals, FilesThatAreNoPicture)
{
    make("empty.jpg", "");
    make("text.jpg", "This is no photo, whatever its name says.\n");
    make("new\nline.png", "");
    make("text.mp4", "This is no film either.\n");
    expect({
        {"export mp4 -i text.mp4 -o out.mp4", 3, "lamina: text.mp4: not a clip that can be read"},
        {"movie text.mp4 -o out.mkv", 3, "lamina: text.mp4: not a clip that can be read"},
        {"movie no.mp4 -o no.mp4", 3, "lamina: no.mp4: no such file"},
        {"export png -i text.jpg -o out.png", 3, "lamina: text.jpg: not a picture"},
        {"export tiff -i no.mp4 -o .", 3, "lamina: no.mp4: no such file"},
        {"blend no.jpg empty.jpg -o out.png", 3, "lamina: no.jpg: no such file"},
        {"blend small.png empty.jpg -o out.png", 3, "lamina: empty.jpg: the file is empty"},
        {"collage small.png no.jpg empty.jpg -o out.png", 3, "lamina: no.jpg: no such file"},
        {"blend text.jpg small.png -o out.png", 3, "lamina: text.jpg: not a picture"},
        {"op invert -i /dev/zero -o out.png", 3, "lamina: /dev/zero: not a regular file"},
        {"op invert -i \"$(printf 'new\\nline.png')\" -o out.png", 3, "lamina: new?line.png: the file is empty"},
        {"op maskWithImage=no,where.png -i small.png -o out.png", 3, "lamina: no,where.png: no such file"},
        {"op invert -i - -o out.png </dev/null", 3, "lamina: standard input: the file is empty"},
        {"filters --sheet out.png -i no.png", 3, "lamina: no.png: no such file"},
        {"filters --sheet out.png -i small.png -i text.jpg", 3, "lamina: text.jpg: not a picture"},
        {"filter GPUImageMosaicFilter --set tileSet=text.jpg -i small.png -o out.png", 3, "lamina: text.jpg: not a"},
        {"filter GPUImageLookupFilter -i small.png -i no.png -o out.png", 3, "lamina: no.png: no such file"},
        {"filter GPUImageLuminosity -i no.png --report", 3, "lamina: no.png: no such file"},
        {"filter GPUImageToneCurveFilter --set pointsWithACVURL=no.acv -i small.png -o out.png", 3,
         "lamina: no.acv: no such file"},
        {"filter GPUImageCropFilter --set cropRegion=0.5,0,0.6,1 -i small.png -o out.png", 3,
         "lamina: cropRegion: must have a width and a height and lie within 0 to 1"},
        {"filter GPUImageToneCurveFilter --set pointsWithACVURL=small.png -i small.png -o out.png", 3,
         "lamina: small.png: the curve file ends too early"},
    });
}

TEST_F(Refusals, PipelinesThatAreNotUnderstoodNameTheirFault)
{
    const auto chain = [](const std::string& filter, const std::string& setter, const std::string& value) {
        return R"({"Filters": [{"FilterName": "GPUImageSepiaFilter"}, {"FilterName": ")" + filter +
               R"(", "Attributes": {")" + setter + R"(": ")" + value + R"("}}]})";
    };
    make("bad.json", "{");
    make("name.json", chain("GPUImageSepia", "setIntensity:", "float(1)"));
    make("two.json", chain("GPUImageDissolveBlendFilter", "setMix:", "float(1)"));
    make("curve.json", chain("GPUImageToneCurveFilter", "setPointsWithACVURL:", "NSString(no.acv)"));
    make("long.json", chain("GPUImageSepiaFilter", "setIntensity:", "float(" + std::string(200'000, 'x') + ")"));
    const auto refused = [](const std::string& file, const std::string& message) {
        return Refusal{"filter --pipeline " + file + " -i small.png -o out.png", 3, "lamina: " + file + ": " + message};
    };
    expect({
        refused("no.json", "no such file"),
        refused("bad.json", "is not JSON"),
        refused("name.json", "'GPUImageSepia': there is no such filter; did you mean GPUImageSepiaFilter?"),
        refused("/dev/zero", "not a regular file"),
        refused("two.json", "'GPUImageDissolveBlendFilter': needs 2 pictures; a pipeline takes filters of one"),
        refused("curve.json", "'setPointsWithACVURL:': 'NSString(no.acv)': no such file"),
        refused("long.json", "'setIntensity:': 'float(xxx"),
    });
}

TEST_F(Refusals, WorkThatCannotBeDone)
{
    expect({
        {"filter GPUImageSolidColorGenerator --size 6x999999 -o out.png", 1,
         "lamina: GPUImageSolidColorGenerator: the GPU draws at most "},
        {"op invert scaleToFillSize=1e6x1e6 -i small.png -o out.png", 1,
         "lamina: scaleToFillSize=1e6x1e6: gives no picture"},
        {"op reflectedImageWithHeight=4294967295,1,0 -i small.png -o out.png", 1, "gives no picture"},
        {"op maskWithImage=flat.png -i small.png -o out.png", 1,
         "maskWithImage=flat.png: FILE has 400 x 200 pixels and the picture 3 x 2 pixels"},
        {"op rotateInDegrees=90 cropToSize=3x2,8 -i small.png -o out.png", 1,
         "cropToSize=3x2,8: reaches beyond the picture, which has 2 x 3 points"},
        {"op cropToSize=1x1 --picture-scale 2.5 -i small.png -o out.png", 1, "1.2 x 0.8 points"},
    });
}

TEST_F(Refusals, OutputsThatCannotBeWritten)
{
    make("earlier.png", "what was there before");
    expect({
        {"blend small.png small.png -o no/out.png", 4, "lamina: no/out.png: no such folder"},
        {"capture -o no/out.jpg", 4, "lamina: no/out.jpg: no such folder"},
        {"capture -o no/out.mkv", 4, "lamina: no/out.mkv: no such folder"},
        {"export svg -i small.png -o no/out.svg", 4, "lamina: no/out.svg: no such folder"},
        {"op invert -i small.png -o - >/dev/full", 4, "lamina: standard output: no space left"},
        {"filters --sheet no/out.png -i small.png --family detection", 4, "lamina: no/out.png: no such folder"},
        {"filters >/dev/full", 4, "lamina: standard output: can't be written"},
    });

    CommandOptions fullDisk;
    fullDisk.fileSizeLimit = 20;
    expect({{"op invert -i small.png -o earlier.png", 4, "lamina: earlier.png: "},
            {"export jpg -i small.png -o .", 4, "lamina: default.jpg: "},
            {"export png -i small.png -o earlier.png", 4, "lamina: earlier.png: "},
            {"export pdf-standard -i small.png -o .", 4, "lamina: UntitledPdf.pdf: "},
            {"export pdf-print -i small.png -o . --crop-marks --profile cmyk", 4, "lamina: CropMarks.pdf: "},
            {"export svg -i small.png -o .", 4, "lamina: UntitledSVG.svg: "},
            {"export mp4 -i small.png -o .", 4, "lamina: Convert.mp4: "},
            {"export tiff -i small.png -o out.tiff", 4, "lamina: out.tiff: "}},
           fullDisk);
    EXPECT_EQ(readFile(folder.path("earlier.png")), "what was there before");
}

TEST_F(Refusals, WithoutAGraphicsDriverOnlyDrawingFails)
{
    make("chain.json", R"({"Filters": [{"FilterName": "GPUImageSepiaFilter"}]})");
    const auto withoutDriver = [&](const std::string& line) {
        return shell("export LAMINA_EGL_DEVICE=99; lamina " + line);
    };
    for (const std::string what : {"GPUImageSepiaFilter", "--pipeline chain.json"}) {
        const CommandResult run = withoutDriver("filter " + what + " -i small.png -o out.png");
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_THAT(run.errors, testing::AllOf(StartsWith("lamina: "), HasSubstr("99")));
    }
    const std::vector<std::string> before = folder.names();
    for (const std::string step : {"--filter 1:sepia --background '2:#ff0000'", "--effect 1:vignette=0.1"}) {
        const CommandResult run = withoutDriver("collage small.png small.png -o out.png " + step + " --reset");
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_THAT(run.errors, testing::AllOf(StartsWith("lamina: out.png: "), HasSubstr("99")));
        EXPECT_EQ(std::ranges::count(run.errors, '\n'), 1);
        EXPECT_EQ(folder.names(), before);
    }
    EXPECT_EQ(withoutDriver("collage small.png small.png -o plain.png --filter 1:500 --effect 1:contrast=9").exitCode,
              0);
    EXPECT_EQ(withoutDriver("filters").exitCode, 0);
    EXPECT_EQ(withoutDriver("filters --sheet out.png -i small.png").exitCode, 1);
    EXPECT_EQ(withoutDriver("filter --help").exitCode, 0);
    EXPECT_EQ(withoutDriver("filter GPUImageSepiaFilter -i no.png -o out.png").exitCode, 3);
    EXPECT_EQ(withoutDriver("filter GPUImageSepiaFilter --set intensity=full -i no.png -o out.png").exitCode, 2);
}

} // namespace
} // namespace lamina::test
