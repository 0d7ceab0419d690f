#!/usr/bin/env python3
"""Writes the bundled sample logs SAMPLE2026.ALL and SAMPLE2026.TXT (one contest, 64 contacts,
in zLog's .ALL and .TXT column forms, Shift-JIS with CR LF).

Usage: make_samples.py OUT.ALL OUT.TXT
The calls are placeholders of realistic shape; the memos carry the marks zLog users write:
operators between "%%", rig frequencies in parentheses, "(0)", "-DUPE-", a QTC note.
"""
import random
random.seed(2026)
# (call, exchange) pools: Japanese calls receive a prefecture-like number, DX calls a zone or serial
stations = [
 ("JA1ZZZ","13"),("JH1XYZ","11"),("JR2ABC","20"),("JA3QRP","25"),("JE4KLM","35"),
 ("JF6XXX","40"),("JA7BBB","03"),("JA8CCC","101"),("JA0DDD","09"),("JG1EEE/1","12"),
 ("JA1ABC/1/P","14"),("7K1XYZ","13"),("8J1RL","13"),("K1XX","05"),("W6ABC","03"),
 ("KH6/K1XX","31"),("VK2XYZ","30"),("DL1ABC","14"),("ON4XX","14"),("BY1AA","24"),
 ("BV2AB","24"),("HL5XYZ","25"),("UA9ABC","17"),("ZL1XX","32"),("VE3ABC","04"),
 ("JA6ZZZ/MM","25"),("DS2ABC","25"),("YB0XYZ","28"),("9M2AB","28"),("HS0ZZZ","26"),
]
bands = ["1.9","3.5","7","14","21","28","50","144"]
modes = ["CW","SSB","FM","RTY","PSK31"]
lines = []
t = 23*60+10  # start 2026/11/21 23:10 UTC, crossing midnight
day0 = 21
entries = []
# 64 contacts: many stations twice or more on different bands
order = list(range(len(stations))) + [0,1,2,3,13,14,16,17,18,19,20,21,24,25,27,4,5,6,7,10,11,12,15,0,13,14,17,1,2,16,18,19,0,13]
for i, si in enumerate(order):
    call, exch = stations[si]
    band = random.choice(bands)
    mode = random.choice(modes)
    if band in ("1.9","3.5") and mode in ("FM",): mode = "CW"
    if band == "144" and mode in ("RTY","PSK31"): mode = "FM"
    t += random.randint(1,9)
    d = day0 + t//1440
    hh = (t//60) % 24; mm = t % 60
    phone = mode in ("SSB","FM")
    rst = "59" if phone else "599"
    memo = ""
    if i % 5 == 0: memo = "%%JA1ZZZ%%"
    elif i % 5 == 2: memo = "%%JH1QRL%%"
    entries.append([d,hh,mm,call,rst,exch,band,mode,memo])
# special memos
entries[3][8] += " (14025)"; entries[3][6] = "14"; entries[3][7] = "CW"
entries[7][8] = "%%JH1QRL%% (0)"
entries[11][8] = "(7012) QSB"
entries[15][8] = "-DUPE-"
entries[19][8] = "%%JA1ZZZ%% (21250) good sig"
entries[23][8] = "JCC 1001"
entries[27][8] = "(144100)"; entries[27][6] = "144"; entries[27][7] = "FM"
entries[31][8] = "%%JH1QRL%% (1825)"; entries[31][6] = "1.9"; entries[31][7] = "CW"
entries[35][8] = "(3525"
entries[39][8] = "[QTC 1/10] qtc sent"
def put(line, col, val):
    if len(line) < col-1+len(val): line += " "*(col-1+len(val)-len(line))
    return line[:col-1] + val + line[col-1+len(val):]
all_lines = ["zLog for Windows Version 2.80e  (c) JA1ZLO"]
txt_lines = ["mon day time  callsign      sent         rcvd      multi   MHz mode pts memo"]
for d,hh,mm,call,rst,exch,band,mode,memo in entries:
    l = ""
    l = put(l,1,"2026/11/%02d %02d:%02d" % (d,hh,mm))
    l = put(l,18,call)
    l = put(l,31,rst)
    l = put(l,43,rst)
    l = put(l,47,exch)
    l = put(l,55,"-")
    l = put(l,61,"-")
    l = put(l,67,band)
    l = put(l,72,mode[:3] if mode!="PSK31" else "PSK31")
    l = put(l,77,"1")
    if memo: l = put(l,80,memo)
    all_lines.append(l.rstrip())
    # .TXT form: month at 1-2 (zLog right-aligns: " 11"), day 5-6, time 8-11, call 13-23,
    # sent 24-26, rcvd 37-39 + exchange 40-48, band 58-60, mode 64-66, memo from 73
    t_ = ""
    t_ = put(t_,1,"%2d" % 11)
    t_ = put(t_,5,"%2d" % d)
    t_ = put(t_,8,"%02d%02d" % (hh,mm))
    t_ = put(t_,13,call[:11])
    t_ = put(t_,24,rst)
    t_ = put(t_,37,rst)
    t_ = put(t_,37+len(rst),exch)
    t_ = put(t_,58,"%3s" % band[:3])
    t_ = put(t_,64,(mode[:3]))
    t_ = put(t_,69,"1")
    if memo: t_ = put(t_,73,memo)
    txt_lines.append(" " + t_.rstrip())
import sys
open(sys.argv[1],"wb").write(("\r\n".join(all_lines)+"\r\n").encode("cp932"))
open(sys.argv[2],"wb").write(("\r\n".join(txt_lines)+"\r\n").encode("cp932"))
print(len(entries))
