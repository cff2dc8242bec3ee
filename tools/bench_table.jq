# Makes the table of tools/bench from what the benchmarks, callgrind and the peers gave.

# ---- what was measured ----

# name/side and size -> the least disturbed of the repetitions. Times are nanoseconds for one operation.
def measured:
    [$times[0].benchmarks[] | select(.run_type == "iteration")
     | (.name | split("/")) as $part
     | {name: ($part[0] + "/" + $part[1]), size: ($part[2] | tonumber), time: (.real_time / .operations),
        allocations, bytes, firstJob, laterJob}]
    | group_by([.name, .size])
    | map(.[0] + {time: (map(.time) | min), firstJob: (map(.firstJob) | min), laterJob: (map(.laterJob) | min)});

def counted: [$instructions[] | {key: "\(.name)/\(.size)", value: .instructions}] | from_entries;

def lookUp($all; $name; $size): $all[] | select(.name == $name and .size == $size);

# ---- how it is written ----

def rounded($digits): pow(10; $digits) as $scale | (. * $scale | round) / $scale;
def digits($n): if . == null then "–" else rounded($n) | tostring end;
def grouped: if . == null then "–" else (round | tostring) as $text
    | [range(($text | length); 0; -3) | $text[([. - 3, 0] | max):.]] | reverse | join(",") end;
def duration: if . == null then "–" elif . < 1000 then "\(digits(0)) ns" elif . < 1e6 then "\(. / 1000 | digits(2)) µs"
    else "\(. / 1e6 | digits(1)) ms" end;
def ratio($part; $whole; $n): if $part == null or $whole == null or $whole == 0 then null else $part / $whole end | digits($n);

def rows($all; $count):
    [$all[] | select(.name | endswith("/component")) | . + {row: (.name | split("/")[0])}]
    | sort_by(.row, .size)[]
    | . as $mine | ($mine.row + "/floor") as $floorName
    | ([lookUp($all; $floorName; $mine.size)] | first) as $floor
    | $count["\($mine.name)/\($mine.size)"] as $ins | $count["\($floorName)/\($mine.size)"] as $floorIns
    | "| \($mine.row) | \($mine.size | grouped) | \($mine.time | duration) | \($floor.time | duration)"
      + " | \(ratio($mine.time; $floor.time; 2)) | \($ins | grouped) | \($floorIns | grouped) | \(ratio($ins; $floorIns; 2))"
      + " | \($mine.allocations | digits(2)) | \($floor.allocations | digits(2)) |";

# The longest job, of which the host's share is what the floor takes: all of it for a pull, which is one job.
def jobs($all):
    [$all[] | select(.laterJob != null and (.name | endswith("/component"))) | . + {row: (.name | split("/")[0])}]
    | sort_by(.row, .size)[]
    | . as $mine | ([lookUp($all; $mine.row + "/floor"; $mine.size)] | first) as $floor
    | (if $mine.row | startswith("pull") then $floor.time * $mine.size else ($floor.firstJob // null | if . then . * 1e9 else null end) end) as $host
    | ([$mine.firstJob, $mine.laterJob] | max * 1e9) as $longest
    | "| \($mine.row) | \($mine.size | grouped) | \($longest | duration) | \($host | duration)"
      + " | \(if $host then [$longest - $host, 0] | max | duration else "–" end) | \($mine.laterJob * 1e9 | duration) |";

# ---- figures ----

# `value` at most `limit`. Of those that depend on the machine a miss is reported and has no further consequence.
def figure($what; $value; $limit; $unit; $machine):
    "| \($what) | \($value | if . == null then "not measured" else digits(2) + $unit end) | \($limit)\($unit) | "
    + (if $value == null then "not measured" elif $value <= $limit then "reached"
       elif $machine then "NOT reached (time)" else "NOT reached" end) + " |";

def worst(values): [values | select(. != null)] | max;

def synchronising: test("^(pull|upload|event)");
def growth($all; $side; value):
    worst($all[] | select(.size == 100000 and (.name | synchronising) and (.name | endswith("/" + $side))) | . as $large
          | [$all[] | select(.name == $large.name and .size == 1000)][0] as $small
          | ($large | value) as $l | ($small | value) as $s | if $l == null or $s == null then null else $l / $s end);
def div($a; $b): if $a == null or $b == null then null else $a / $b end;
def of($all; $name; $size; $field): [lookUp($all; $name; $size)[$field]][0];
def overFloor($all; $name; $size): of($all; $name + "/component"; $size; "allocations") - of($all; $name + "/floor"; $size; "allocations");

# What one clip takes, as a share of what it takes the faster of the peers.
def ofPeer($peerRow; $time): $time / ([$peers[0][].nanoseconds[$peerRow]] | min);
def comparable: {"pull, first": "initial update", "event, one added": "single inserts", "event, one updated": "single field edits"};

def figures($all; $count):
    (worst([0, 1000, 10000, 100000][] as $n | $all[] | select(.size == $n and (.name | startswith("memory, of a moment/component"))) | -.bytes)) as $memory
    | figure("pull of 100,000, instructions: times the floor";
             div($count["pull, first/component/100000"]; $count["pull, first/floor/100000"]); 2; ""; false),
      figure("pull of 100,000, time: times the floor";
             div(of($all; "pull, first/component"; 100000; "time"); of($all; "pull, first/floor"; 100000; "time")); 2; ""; true),
      figure("instructions for a clip or event at 100,000: times those at 1,000, worst row";
             growth($all; "component"; $count["\(.name)/\(.size)"]); 1.5; ""; false),
      figure("time for a clip or event at 100,000: times that at 1,000, worst row (worst floor: \(growth($all; "floor"; .time) | digits(2)))";
             growth($all; "component"; .time); 3; ""; true),
      figure("upload of 10,000 new clips: the classifying job"; of($all; "upload, all new/component"; 10000; "firstJob") * 1000; 20; " ms"; true),
      figure("upload of 10,000 new clips: the longest other job"; of($all; "upload, all new/component"; 10000; "laterJob") * 1000; 8; " ms"; true),
      figure("renamed row of 10,000, instructions: times an update of 10,000";
             div($count["upload, one row renamed/component/10000"]; $count["upload, one row updated/component/10000"]); 1.5; ""; false),
      figure("renamed row of 10,000, time: times an update of 10,000";
             div(of($all; "upload, one row renamed/component"; 10000; "time"); of($all; "upload, one row updated/component"; 10000; "time")); 1.5; ""; true),
      figure("presentation view of 200 rows reversed, instructions: times the floor";
             div($count["presentation view, reversed/component/200"]; $count["presentation view, reversed/floor/200"]); 2; ""; false),
      figure("presentation view of 200 rows reversed, time: times the floor";
             div(of($all; "presentation view, reversed/component"; 200; "time"); of($all; "presentation view, reversed/floor"; 200; "time")); 2; ""; true),
      figure("idle work: allocations"; worst($all[] | select(.name | startswith("idle")) | .allocations); 0; ""; false),
      figure("idle work: instructions at 100,000 times those at 1,000";
             worst($all[] | select(.size == 100000 and (.name | startswith("idle")))
                   | div($count["\(.name)/100000"]; $count["\(.name)/1000"])); 1.01; ""; false),
      figure("idle work: time"; worst($all[] | select(.name | startswith("idle")) | .time); 1000; " ns"; true),
      figure("memory of a moment, held by the component"; $memory; 400; " bytes"; false),
      figure("allocations above the floor's: an event that adds a moment"; overFloor($all; "event, one added"; 100000); 2.1; ""; false),
      figure("allocations above the floor's: an event that updates a moment"; overFloor($all; "event, one updated"; 100000); 5.1; ""; false),
      figure("allocations above the floor's: an event that deletes a moment"; overFloor($all; "event, one deleted"; 100000); 6.1; ""; false),
      figure("stripped shared object"; $library[0].strippedBytes / 1024; 1024; " KiB"; false),
      figure("functions that run when it is loaded"; $library[0].initialisers; 0; ""; false),
      (if $peers[0] == null then empty else
       (([$peers[0][].bytesPerClip] | min) as $lean
        | figure("memory of a moment: share of the leaner peer's"; div($memory; $lean); 0.25; ""; false)),
       (comparable | to_entries[] | . as $row
        | of($all; .key + "/component"; 100000; "time") as $time | of($all; .key + "/floor"; 100000; "time") as $floor
        | figure("\($row.key), with the host's timeline: share of the faster peer's time"; ofPeer($row.value; $time); 0.1; ""; true),
          figure("\($row.key), what is above the floor: share of the faster peer's time";
                 ofPeer($row.value; [$time - $floor, 0] | max); 0.1; ""; true))
       end);

def peerRows($all):
    if $peers[0] == null then empty else
    "", "Peers, for one clip:", "",
    "| | component | \([$peers[0][] | "\(.peer) \(.version)"] | join(" | ")) |", "|---|---|\([$peers[0][] | "---|"] | join(""))",
    (comparable | to_entries[] as $row
     | of($all; $row.key + "/component"; 100000; "time") as $time | of($all; $row.key + "/floor"; 100000; "time") as $floor
     | "| \($row.value) | \($time | duration), of which the host's timeline \($floor | duration) | \([$peers[0][].nanoseconds[$row.value] | duration] | join(" | ")) |"),
    "| memory | \(-of($all; "memory, of a moment/component"; 100000; "bytes") | digits(0)) bytes, and \(of($all; "memory, of a moment/host"; 100000; "bytes") | digits(0)) in the host's timeline | \([$peers[0][].bytesPerClip | digits(0) + " bytes"] | join(" | ")) |"
    end;

measured as $all | counted as $count
| "\($conditions)", "",
  "Of one clip, event, row or turn; CPU time.", "",
  "| what | size | time | floor | ratio | instructions | floor | ratio | allocations | floor |",
  "|---|---|---|---|---|---|---|---|---|---|",
  rows($all; $count),
  "", "The main thread's longest job:", "",
  "| what | size | longest job | the host's share | the component's | longest but the first |",
  "|---|---|---|---|---|---|", jobs($all),
  peerRows($all), "",
  "| figure | measured | at most | |", "|---|---|---|---|",
  figures($all; $count)
