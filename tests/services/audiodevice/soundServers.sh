#!/bin/sh
# soundServers.sh start|stop FOLDER [pulse|jack]: runs a JACK server on its dummy driver and a PulseAudio
# server with a null sink for the tests, with a runtime folder and a server name of their own. FOLDER/NAME.pid
# holds the process, FOLDER/NAME.skip the reason why there is none. JACK_RATE and JACK_NAME change those of JACK.
set -u
folder=$2
which=${3:-pulse jack}

is_alive() {
    kill -0 "$1" 2>/dev/null && ! grep -q '^State:[[:space:]]*Z' "/proc/$1/status" 2>/dev/null
}

# Waits for two seconds at most until a process has ended.
has_ended() {
    for _ in 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20; do
        is_alive "$1" || return 0
        sleep 0.1
    done
    return 1
}

reset() {
    [ -f "$folder/$1.pid" ] || return 0
    pid=$(cat "$folder/$1.pid")
    rm -f "$folder/$1.pid"
    kill "$pid" 2>/dev/null || return 0
    has_ended "$pid" && return 0
    kill -9 "$pid" 2>/dev/null
    has_ended "$pid"
}

# Waits until the command given succeeds while the server of that name lives, for ten seconds at most.
await() {
    name=$1
    shift
    for _ in $(seq 100); do
        "$@" >/dev/null 2>&1 && return 0
        is_alive "$(cat "$folder/$name.pid")" || break
        sleep 0.1
    done
    reset "$name"
    echo "$name did not start, see $folder/$name.log" >"$folder/$name.skip"
    return 1
}

start_pulse() {
    command -v pulseaudio >/dev/null && command -v parec >/dev/null && command -v pactl >/dev/null || {
        echo "pulseaudio or pulseaudio-utils is not installed" >"$folder/pulse.skip"
        return 0
    }
    cat >"$folder/pulse.pa" <<END
load-module module-native-protocol-unix socket=$folder/native auth-anonymous=1
load-module module-null-sink sink_name=null0 rate=48000 channels=2 format=float32le
set-default-sink null0
END
    HOME=$folder XDG_RUNTIME_DIR=$folder pulseaudio -n --daemonize=no --exit-idle-time=-1 --realtime=no \
        --high-priority=no --use-pid-file=no -F "$folder/pulse.pa" </dev/null >"$folder/pulse.log" 2>&1 &
    echo $! >"$folder/pulse.pid"
    await pulse env "PULSE_SERVER=unix:$folder/native" XDG_RUNTIME_DIR="$folder" pactl info
}

start_jack() {
    command -v jackd >/dev/null && command -v jack_wait >/dev/null || {
        echo "jackd2 is not installed" >"$folder/jack.skip"
        return 0
    }
    server=$(cat "$folder/jack.name")
    # What a killed server left behind may hold up the first one that comes behind it.
    for _ in 1 2; do
        JACK_NO_AUDIO_RESERVATION=1 jackd -n "$server" -r -d dummy -r "${JACK_RATE:-48000}" -p 512 \
            </dev/null >"$folder/jack.log" 2>&1 &
        echo $! >"$folder/jack.pid"
        rm -f "$folder/jack.skip"
        await jack jack_wait -s "$server" -w -t 1 && return 0
    done
    return 1
}

case $1 in
start)
    mkdir -p "$folder" && chmod 700 "$folder" || exit 1
    # JACK keeps a small list of names for good: the same ones are used in each run of a build folder.
    echo "${JACK_NAME:-volvelle-$(echo "$folder" | cksum | cut -d ' ' -f 1)}" >"$folder/jack.name"
    for name in $which; do
        reset "$name"
        rm -f "$folder/$name.skip"
        "start_$name"
    done
    ;;
stop)
    for name in $which; do
        reset "$name"
    done
    ;;
*)
    echo "soundServers.sh start|stop FOLDER [pulse|jack]" >&2
    exit 2
    ;;
esac
exit 0
