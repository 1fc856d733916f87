#!/usr/bin/env bash
# The examples with the demo's cameras, one after the other as a user goes through them. Runs on the demo's machine.
#
# usage: examples.sh DIRECTORY-OF-PROGRAMS SETTINGS-FILE
set -eu -o pipefail
PATH=$1:$PATH settings=$2
set -x

list-cameras | grep -F "10.99.0.5"
set-address 103 192.168.10.13 255.255.255.0
list-cameras | grep -F "192.168.10.13"
open-and-configure 103 Width=320 ExposureTime=2500
save-features 103 "$settings"
open-and-configure 103 Width=640
compare-features 103 "$settings" | grep -Fx "Width: 320 in the file, 640 now"
load-features 103 "$settings"
open-and-configure 103 | grep "^Width: 320 "
grab-images 103 3 | grep -Fx "3 frames, 0 lost, 0 incomplete"
grab-images 103 3 --poll | grep -Fx "3 frames, 0 lost, 0 incomplete"
set-address 103 192.168.10.14 255.255.255.0 --keep
# It watches until its input ends; here it is ended by who has read enough.
{ timeout 20 watch-camera 103 < <(sleep infinity) || true; } | grep -m 1 "EventExposureEnd has changed"
