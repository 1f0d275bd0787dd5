"""From linear light to a photograph: lens, film and file."""

import io

import numpy as np
from PIL import Image, ImageCms

from .noise import smoothstep


def mix(a, b, t):
    """Between two colours, or pictures, by a number or a plane."""
    t = np.asarray(t)[..., None]
    return np.asarray(a, np.float32) * (1 - t) + np.asarray(b, np.float32) * t


def convolved(picture, kernel_of):
    """Each plane convolved through its spectrum; edges are mirrored. `kernel_of(fy, fx)` gives the kernel's spectrum in
    cycles per pixel."""
    height, width = picture.shape[:2]
    planes = picture.reshape(height, width, -1)
    margin = min(height, width) // 4
    padded = np.pad(planes, ((margin, margin), (margin, margin), (0, 0)), mode="reflect")
    fy = np.fft.fftfreq(padded.shape[0])[:, None]
    fx = np.fft.rfftfreq(padded.shape[1])[None, :]
    kernel = kernel_of(fy, fx)
    out = np.empty_like(planes, dtype=np.float32)
    for c in range(planes.shape[2]):
        spectrum = np.fft.rfft2(padded[..., c]) * kernel
        full = np.fft.irfft2(spectrum, s=padded.shape[:2])
        out[..., c] = full[margin : margin + height, margin : margin + width]
    return out.reshape(picture.shape)


def blurred(picture, sigma, sigma_y=None):
    """Gaussian; `sigma` in pixels."""
    sy = sigma if sigma_y is None else sigma_y
    return convolved(picture, lambda fy, fx: np.exp(-2 * np.pi**2 * ((fx * sigma) ** 2 + (fy * sy) ** 2)))


def defocused(picture, radius):
    """Every point becomes a disc, a little brighter at its rim, as an open lens shows it."""
    if radius < 0.6:
        return picture
    height, width = picture.shape[:2]
    margin = min(height, width) // 4
    rows, columns = height + 2 * margin, width + 2 * margin
    y = np.minimum(np.arange(rows), rows - np.arange(rows))[:, None]
    x = np.minimum(np.arange(columns), columns - np.arange(columns))[None, :]
    r = np.hypot(x, y) / radius
    disc = np.clip((1 - r) * radius + 0.5, 0, 1) * (0.82 + 0.18 * r**4)
    spectrum = np.fft.rfft2(disc / disc.sum())
    return np.maximum(convolved(picture, lambda fy, fx: spectrum), 0)


def bloom(light, strength=0.1, threshold=1.0):
    """Scatter in the lens: what is very bright spills over, near and far."""
    height = light.shape[0]
    bright = np.maximum(light - threshold, 0)
    spill = sum(share * blurred(bright, height * reach) for share, reach in [(0.6, 0.008), (0.3, 0.03), (0.2, 0.1)])
    return light + strength * spill


def film_curve(light):
    """A filmic shoulder and toe (Narkowicz's fit): 0 stays 0, bright light bends towards 1."""
    light = np.maximum(light, 0)
    return np.clip(light * (2.51 * light + 0.03) / (light * (2.43 * light + 0.59) + 0.14), 0, 1)


def encoded(linear):
    return np.where(linear <= 0.0031308, 12.92 * linear, 1.055 * np.maximum(linear, 1e-9) ** (1 / 2.4) - 0.055)


def saturated(light, amount):
    grey = light @ np.array([0.2126, 0.7152, 0.0722], np.float32)
    return np.maximum(mix(np.repeat(grey[..., None], 3, 2), light, np.full(grey.shape, amount)), 0)


def developed(light, rng, exposure=1.0, vignette=0.35, grain=0.012, saturation=1.0):
    """8-bit sRGB pixels of a scene in linear light."""
    height, width = light.shape[:2]
    y, x = np.mgrid[-1 : 1 : height * 1j, -1 : 1 : width * 1j]
    falloff = 1 - vignette * smoothstep(0.3, 1.9, x * x + y * y)
    light = blurred(light, 0.55)  # no lens draws a harder edge
    shown = encoded(film_curve(saturated(light, saturation) * (exposure * falloff)[..., None]))
    noise = rng.normal(0, 1, (height, width)).astype(np.float32)
    noise = noise + 0.5 * (np.roll(noise, 1, 0) + np.roll(noise, 1, 1))
    luminance = shown.mean(axis=2)
    shown = shown + (grain * noise * (0.35 + 0.65 * np.sqrt(np.clip(luminance * (1 - luminance) * 4, 0, 1))))[..., None]
    return np.round(np.clip(shown, 0, 1) * 255).astype(np.uint8)


def srgb_profile():
    data = bytearray(ImageCms.ImageCmsProfile(ImageCms.createProfile("sRGB")).tobytes())
    data[24:36] = bytes.fromhex("07e800010001000000000000")  # a fixed day, so that the files don't change
    return bytes(data)


def jpeg(pixels, quality=88, orientation=None):
    """The file's bytes. Orientation 6 stores the picture lying: a quarter turn clockwise shows it upright."""
    image = Image.fromarray(pixels)
    options = {}
    if orientation == 6:
        image = image.transpose(Image.Transpose.ROTATE_90)
        exif = Image.Exif()
        exif[0x0112] = 6
        options["exif"] = exif
    out = io.BytesIO()
    image.save(out, "JPEG", quality=quality, subsampling=2, optimize=True, progressive=False,
               icc_profile=srgb_profile(), **options)
    return out.getvalue()
