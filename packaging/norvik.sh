#!/bin/sh
# Starts the window with the bundled producer first, then whatever the user has. Finds it beside itself, wherever the
# whole was installed.
norvik=$(dirname "$(readlink -f "$0")")/../lib/norvik
GENICAM_GENTL64_PATH=$norvik/cti${GENICAM_GENTL64_PATH:+:$GENICAM_GENTL64_PATH}
export GENICAM_GENTL64_PATH
exec "$norvik/bin/norvik" "$@"
