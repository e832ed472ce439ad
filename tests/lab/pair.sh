# shellcheck shell=bash
# pair.sh: two routers with a line between them, for tests that listen to it themselves, and programs
# that are ended with the routers. Sourced behind ground.sh.

# What is heard here is heard by the tool.
listen() { :; }

# start NAME COMMAND...: a program, which is ended with the routers
start() {
    local name=$1
    shift
    : >"$out/$name.err"
    "$@" >"$out/$name.out" 2>"$out/$name.err" </dev/null &
    process[tool $name]=$!
}

# says NAME TEXT: waits until the program has said so on standard error
says() {
    until grep -q "$2" "$out/$1.err"; do
        kill -0 "${process[tool $1]}" || { cat "$out/$1.err" >&2; exit 1; }
        sleep 0.05
    done
}

# ends NAME: asks the program to end, which it does with status 0
ends() {
    kill -TERM "${process[tool $1]}"
    wait "${process[tool $1]}" || { cat "$out/$1.err" >&2; exit 1; }
    unset "process[tool $1]"
}

# Timers as short as whole seconds are, and no waiting with what is to be told.
router_config() { # NUMBER INTERFACE
    frr_head "$1"
    frr_ospf 'timers throttle lsa all 0' 'timers lsa min-arrival 0'
    frr_ospf6 'timers lsa min-arrival 0'
    frr_loop 0
    printf 'interface %s\n' "$2"
    printf ' ip ospf %s\n ipv6 ospf6 %s\n' {network,network}' point-to-point' \
        {'hello-interval 1','hello-interval 1'} {'dead-interval 4','dead-interval 4'}
    printf ' ip ospf area 0\n ipv6 ospf6 area 0\nexit\n'
}

# pair NETWORK A B: routers rA and rB with IDs 10.NETWORK.0.A and B
pair() {
    local n=$1 a=$2 b=$3
    # shellcheck disable=SC2034  # of configs.sh
    net=10.$n.0
    router "r$a" frr ospfd ospf6d
    router "r$b" frr ospfd ospf6d
    line "r${a}r$b" "r$a" "to-r$b" "r$b" "to-r$a"
    address "r$a" lo "10.$n.0.$a/32" "2001:db8:$n::$a/128"
    address "r$b" lo "10.$n.0.$b/32" "2001:db8:$n::$b/128"
    address "r$a" "to-r$b" "10.$n.12.1/30" "2001:db8:$n:12::1/64"
    address "r$b" "to-r$a" "10.$n.12.2/30" "2001:db8:$n:12::2/64"
    router_config "$a" "to-r$b" | config "r$a"
    router_config "$b" "to-r$a" | config "r$b"
}

# collects NAME ROUTER INTERFACE: a store of what is heard there
collects() {
    start "$1" ip netns exec "$prefix-$2" "$tool" collect -i "$3" --store "$out/$1.store"
    says "$1" 'listening on'
}
