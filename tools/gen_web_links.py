#!/usr/bin/env python3
"""Writes app/panels/web_link_tables.inc: the driver and review link tables of the tools panel.

Each review key stands for a piece of a model name. A key's rows go: our own page of the model first, then
reviews on other sites, then a web search when the key has more than one row.
Run from the repository root: python3 tools/gen_web_links.py
"""
import os
import urllib.parse

HOST = "https://lumenscope.example.org"
REVIEW_SITES = [
    ("Guru3D", "https://www.guru3d.com/?s={q}"),
    ("AnandTech", "https://www.anandtech.com/SearchResults?q={q}"),
    ("Tom's Hardware", "https://www.tomshardware.com/search?searchTerm={q}"),
    ("TechPowerUp", "https://www.techpowerup.com/search/?q={q}"),
    ("Hexus", "https://hexus.net/search/?q={q}"),
    ("bit-tech", "https://www.bit-tech.net/search/?q={q}"),
    ("The Tech Report", "https://techreport.com/?s={q}"),
    ("PC Perspective", "https://pcper.com/?s={q}"),
    ("Hardware Canucks", "https://www.hardwarecanucks.com/?s={q}"),
]


def nvidia_model(key):
    if key[0].isdigit():
        number = int(key[:4])
        if 5000 <= number < 6000:
            return "GeForce FX " + key
        if 4000 <= number < 5000:
            return "GeForce4 Ti " + key
    return "GeForce " + key


def amd_model(key):
    if key[0] == "X":
        return "ATI Radeon " + key
    number = int(key[:4])
    if 6000 <= number < 8000 and number != 7500:
        return "AMD Radeon HD " + key
    if 2000 <= number < 6000:
        return "ATI Radeon HD " + key
    if 1000 <= number < 2000:
        return "ATI Radeon X" + key
    return "ATI Radeon " + key


# Keys in table order, with the number of rows of each.
NVIDIA_KEYS = [
    ("GTX 680", 2), ("GTX 590", 2), ("GTX 580", 2), ("GTX 570", 2), ("GTX 560 Ti", 2), ("GTX 560", 2),
    ("GTX 550", 2), ("GTX 480", 2), ("GTX 470", 2), ("GTX 465", 2), ("GTX 460", 2), ("GTS 450", 2),
    ("GT 440", 2), ("GT 430", 2), ("GT 420", 2), ("GTX 295", 5), ("GTX 285", 2), ("GTX 280", 3),
    ("GTX 275", 3), ("GTX 260", 2), ("GTS 250", 2), ("GT 240", 2), ("GT 220", 2), ("9800 GTX", 2),
    ("9800 GT", 2), ("9800 GX2", 3), ("9600 GSO", 2), ("9600 GT", 3), ("9500 GT", 3), ("9400 GT", 2),
    ("8800 GTS 512", 4), ("8800 GTS", 1), ("8800 GTX", 4), ("8800 GT", 4), ("8800 Ultra", 3),
    ("8800 ULtra", 1), ("8800 Ultra", 1), ("8800", 7), ("8600", 11), ("8500", 2), ("8400", 2), ("7950", 5),
    ("7900", 10), ("7800", 3), ("7600", 5), ("7300", 3), ("6800", 4), ("6600", 5), ("6200", 2), ("5950", 5),
    ("5800", 2), ("5500", 2), ("5200", 3), ("4800", 3), ("4600", 3), ("4400", 2), ("4200", 2),
]
AMD_KEYS = [
    ("7970", 2), ("7950", 2), ("7870", 2), ("7850", 2), ("7770", 2), ("7750", 2), ("6990", 2), ("6970", 2),
    ("6950", 2), ("6870", 2), ("6850", 2), ("6670", 2), ("6570", 2), ("5970", 4), ("5870", 5), ("5850", 4),
    ("5830", 4), ("5770", 4), ("5750", 2), ("5670", 2), ("5650", 2), ("5450", 2), ("4890", 2), ("4870 X2", 2),
    ("4870", 2), ("4850 X2", 2), ("4850", 2), ("4830", 2), ("4670", 2), ("4650", 2), ("4550", 2),
    ("3870 X2", 3), ("3870", 7), ("3850 X2", 2), ("3850", 5), ("3670", 2), ("3450", 2), ("2900", 9),
    ("2600", 5), ("2400", 3), ("1950", 10), ("1900", 3), ("1800", 3), ("1650", 2), ("1600", 3), ("1050", 3),
    ("X850", 2), ("X800", 3), ("X700", 3), ("X600", 3), ("X550", 3), ("X300", 3), ("9800", 4), ("9700", 3),
    ("9600", 2), ("9550", 2), ("9500", 2), ("9250", 1), ("9200", 1), ("9100", 1), ("9000", 1), ("8500", 1),
    ("7500", 1),
]
S3_KEYS = [("440 GTX", 1), ("430 GT", 2)]


def slug(text):
    return "".join(c if c.isalnum() else "-" for c in text.lower()).strip("-")


def key_rows(key, count, title_name, google_name, search_name):
    rows = [(key, f"{HOST}/gpudb/gpu.php?model={slug(title_name)}", f"{title_name} @ Orbiscale")]
    if count == 1:
        return rows
    query = urllib.parse.quote_plus(search_name + " review")
    for site, pattern in REVIEW_SITES[: count - 2]:
        rows.append((key, pattern.format(q=query), f"{title_name} Review @ {site}"))
    rows.append((key, f"https://www.google.com/search?q={query}", f"{google_name} @ Google"))
    return rows


def review_table(keys, title_of, google_of, search_of):
    rows = []
    for key, count in keys:
        rows += key_rows(key, count, title_of(key), google_of(key), search_of(key))
    return rows


NVIDIA_REVIEWS = review_table(NVIDIA_KEYS, nvidia_model, lambda k: "NVIDIA " + nvidia_model(k),
                              lambda k: "NVIDIA " + nvidia_model(k))
AMD_REVIEWS = review_table(AMD_KEYS, amd_model, amd_model, amd_model)
S3_REVIEWS = review_table(S3_KEYS, lambda k: "S3 Graphics Chrome " + k, lambda k: "S3 Graphics Chrome " + k,
                          lambda k: "S3 Chrome " + k)
OTHER_REVIEWS = [("", f"{HOST}/gpudb/", "Graphics Cards @ Orbiscale")]

NVIDIA_DRIVERS = [
    ("Latest ForceWare XP/Vista @ Orbiscale", f"{HOST}/drivers/nvidia/"),
    ("Forceware Downloads @ Guru3D", "https://www.guru3d.com/download/nvidia-geforce/"),
    ("Nvidia Forceware Tweak Guide", "https://www.tweakguides.com/NVFORCE_1.html"),
    ("NVIDIA Drivers Archive", "https://www.nvidia.com/en-us/drivers/unix/"),
    ("NVIDIA GeForce To Quadro Soft-Mod Guide", "https://www.techarp.com/?s=quadro+soft-mod"),
]
AMD_DRIVERS = [
    ("Latest Catalyst XP/Vista @ Orbiscale", f"{HOST}/drivers/amd/"),
    ("Catalyst Downloads @ Guru3D", "https://www.guru3d.com/download/amd-radeon/"),
    ("ATI Catalyst Tweak Guide", "https://www.tweakguides.com/ATICAT_1.html"),
]
S3_DRIVERS = [
    ("Latest S3 graphics drivers XP/Vista @ Orbiscale", f"{HOST}/drivers/s3/"),
    ("S3 Graphics", "https://www.s3graphics.com/"),
]
OTHER_DRIVERS = [("Graphics Drivers @ Orbiscale", f"{HOST}/drivers/")]


def c_text(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def main():
    assert len(NVIDIA_REVIEWS) == 167 and len(AMD_REVIEWS) == 171 and len(S3_REVIEWS) == 3
    out = ["// Generated by tools/gen_web_links.py; edit the script, not this file.", ""]
    for name, rows in (("kNvidiaDriverLinks", NVIDIA_DRIVERS), ("kAmdDriverLinks", AMD_DRIVERS),
                       ("kS3DriverLinks", S3_DRIVERS), ("kOtherDriverLinks", OTHER_DRIVERS)):
        out.append(f"inline constexpr DriverLinkRow {name}[] = {{")
        out += [f"    {{{c_text(t)}, {c_text(u)}}}," for t, u in rows]
        out += ["    {nullptr, nullptr},", "};", ""]
    for name, rows in (("kNvidiaReviewLinks", NVIDIA_REVIEWS), ("kAmdReviewLinks", AMD_REVIEWS),
                       ("kS3ReviewLinks", S3_REVIEWS), ("kOtherReviewLinks", OTHER_REVIEWS)):
        out.append(f"inline constexpr ReviewLinkRow {name}[] = {{")
        out += [f"    {{{c_text(k)}, {c_text(u)}, {c_text(t)}}}," for k, u, t in rows]
        out += ["    {nullptr, nullptr, nullptr},", "};", ""]
    path = os.path.join(os.path.dirname(__file__), "..", "app", "panels", "web_link_tables.inc")
    with open(path, "w", encoding="ascii") as f:
        f.write("\n".join(out))


if __name__ == "__main__":
    main()
