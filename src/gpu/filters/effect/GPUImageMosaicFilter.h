#pragma once

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageTwoInputFilter.h"
#include "gpu/core/PictureTexture.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/gl/GLHeaders.h"
#include "platform/image/pixels/CGImage.h"

#include <memory>
#include <string>

namespace lamina {

/// Lays a picture from tiles: for each place the tile that is as bright.
///
///   t = c - mod(c, displayTileSize),   Y = 0.299 red + 0.587 green + 0.114 blue of p = in(t + displayTileSize / 2),
///   k = min(floor(Y * numTiles), numTiles - 1),
///   out = tiles((mod(k, columns), floor(k / columns)) + (c - t) / displayTileSize) * inputTileSize),
///   columns = 1 / inputTileSize.width;   with `colorOn` out.rgb times p.rgb;   out.a = p.a
///
/// Luma weights: Rec. ITU-R BT.601, on straight values as stored. The tiles stand in one picture, in rows from its top
/// left, from the darkest to the brightest. It fills slot 1 and is part of the filter: who uses the filter feeds slot 0
/// alone. A new filter has 64 tiles of its own, white discs that grow on black; another picture in slot 1, pushed there
/// or from a file, takes their place.
class GPUImageMosaicFilter : public GPUImageTwoInputFilter {
public:
    GPUImageMosaicFilter();
    static FilterDescription describe();

    /// Of the tiles that are laid, in shares of the output's width and height; (0.025, 0.025) at first.
    CGSize displayTileSize() const { return m_displayTileSize; }
    void setDisplayTileSize(CGSize size);
    /// Of the tiles in their picture, in shares of its width and height; (0.125, 0.125) at first, 8 x 8 tiles.
    CGSize inputTileSize() const { return m_inputTileSize; }
    void setInputTileSize(CGSize size);
    /// How many there are, 64 at first; less than 1 counts as 1.
    float numTiles() const { return m_numTiles; }
    void setNumTiles(float count);
    /// Whether tiles take the colours of what they stand for; true at first.
    bool colorOn() const { return m_colorOn; }
    void setColorOn(bool on);

    /// The file of the tiles; empty, as at first, for the filter's own. An error changes nothing; its subject is the
    /// path. From any thread; waits for the video processing queue.
    const std::string& tileSet() const { return m_tileSet; }
    Outcome setTileSet(const std::string& path);

    int nextAvailableTextureIndex() const override { return 0; }

private:
    void layTiles(const CGImage& tiles);

    GLint m_displayTileSizeUniform;
    GLint m_inputTileSizeUniform;
    GLint m_numTilesUniform;
    GLint m_colorOnUniform;
    CGSize m_displayTileSize;
    CGSize m_inputTileSize;
    float m_numTiles = 0;
    bool m_colorOn = false;
    std::string m_tileSet;
    std::unique_ptr<PictureTexture> m_tiles;
};

} // namespace lamina
