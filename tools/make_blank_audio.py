#!/usr/bin/env python3
"""Writes "assets/sounds/Blank Audio.mp3": three seconds of silence, the sound of a video made from a picture.

    tools/make_blank_audio.py

An MP3 frame whose side information is all zero says that no band holds anything, which is silence; so the file is made
here byte by byte (ISO/IEC 11172-3, layer III) and stands on no encoder.
"""

from pathlib import Path

TARGET = Path(__file__).resolve().parent.parent / "assets" / "sounds" / "Blank Audio.mp3"
RATE, BITS_PER_SECOND, SAMPLES_PER_FRAME, SECONDS = 44100, 32000, 1152, 3


def frame(padding):
    """MPEG-1, layer III, without checksum; 32 kbit/s at 44.1 kHz; one channel; marked as an original."""
    header = bytes([0xFF, 0xFB, 0x10 | padding << 1, 0xC4])
    length = SAMPLES_PER_FRAME // 8 * BITS_PER_SECOND // RATE + padding
    return header + bytes(length - len(header))


def frames():
    """Frames hold whole bytes: some have one more, so that the rate comes out on the average."""
    left = 0
    for _ in range(-(-SECONDS * RATE // SAMPLES_PER_FRAME)):
        left += SAMPLES_PER_FRAME // 8 * BITS_PER_SECOND % RATE
        padding, left = divmod(left, RATE)
        yield frame(padding)


if __name__ == "__main__":
    TARGET.parent.mkdir(exist_ok=True)
    TARGET.write_bytes(b"".join(frames()))
