# Makes the report of tools/bench from what the benchmarks, callgrind and the peers gave.

# ---- what was measured ----

def median: sort | .[length / 2 | floor];
def least($field): map(.[$field] | select(. != null)) | min;
def most($field): map(.[$field] | select(. != null)) | max;
def middle($field): map(.[$field] | select(. != null)) | if length == 0 then null else median end;

# "name/side" and size, of all repetitions: of times the least and the median, of jobs the median and the longest. Seconds.
def measured:
    [$times[0].benchmarks[] | select(.run_type == "iteration") | (.name | split("/")) as $part
     | . + {side: $part[1], row: $part[0], size: ($part[2] | tonumber)}]
    | group_by([.row, .side, .size])
    | map({name: "\(.[0].row)/\(.[0].side)", row: .[0].row, side: .[0].side, size: .[0].size,
           allocations: .[0].allocations, bytes: .[0].bytes,
           time: least("timeLeast"), usualTime: middle("timeMedian"),
           firstJob: middle("firstJobMedian"), firstJobMost: most("firstJobMost"),
           laterJob: middle("longestLaterJobMedian"), laterJobMost: most("longestLaterJobMost"),
           longestJob: middle("longestJobMedian"), longestJobMost: most("longestJobMost"),
           usualJob: middle("usualJobMedian"), usualJobMost: most("usualJobMost")});

def counted: [$whole[] | {key: "\(.name)/\(.size)", value: {component: .component.Ir, host: .host.Ir, all: (.component.Ir + .host.Ir)}}]
    | from_entries;

# In the order of the explanation; within a group as the benchmarks name them.
def order: [$cases[] | split("/") | {name: "\(.[0])/\(.[1])", size: (.[2] | tonumber)}]
    | to_entries | map(.value + {group: (.value.name as $name | ["pull", "upload", "event", "presentation", "idle", "queue", "memory"]
                                         | index($name | split(" ")[0] | rtrimstr(","))), number: .key})
    | sort_by(.group, .number);

def look($all; $name; $size): [$all[] | select(.name == $name and .size == $size)][0];
def div($a; $b): if $a == null or $b == null or $b == 0 then null else $a / $b end;
def minus($a; $b): if $a == null then null else $a - ($b // 0) end;
def times($a; $b): if $a == null or $b == null then null else $a * $b end;

# ---- how it is written ----

def rounded($digits): pow(10; $digits) as $scale | (. * $scale | round) / $scale;
def digits($n): if . == null then "–" else rounded($n) | tostring end;
def grouped: if . == null then "–" else (round | tostring) as $text
    | [range(($text | length); 0; -3) | $text[([. - 3, 0] | max):.]] | reverse | join(",") end;
def duration: if . == null then "–" else . * 1e9 | if . < 1000 then "\(digits(0)) ns" elif . < 1e6 then "\(. / 1000 | digits(2)) µs"
    else "\(. / 1e6 | digits(2)) ms" end end;
def percent: if . == null then "not measured" else "\(. * 100 | digits(0)) %" end;
def row($cells): "| \($cells | join(" | ")) |";

def rows($all; $count):
    order[] | select(.name | endswith("/component")) | select(.name | test("^memory|, as jobs/") | not)
    | look($all; .name; .size) as $mine | look($all; "\($mine.row)/floor"; .size) as $floor
    | $count["\($mine.name)/\($mine.size)"] as $ins | $count["\($mine.row)/floor/\($mine.size)"].all as $floorIns
    | row([$mine.row, ($mine.size | grouped), ($mine.time | duration), ($mine.usualTime | duration), ($floor.time | duration),
           (div($mine.time; $floor.time) | digits(2)), ($ins.component | grouped), ($ins.host | grouped), ($floorIns | grouped),
           (div($ins.all; $floorIns) | digits(2)), ($mine.allocations | digits(2)),
           (minus($mine.allocations; $floor.allocations) | digits(2))]);

def part: if . == null then null else .component / (.component + .host) end;

# The component's part of the instructions of that job which has the most of those that `which` selects.
def share($mine; which): [$jobs[] | select(.name == $mine.name and .size == $mine.size and (.job | which))]
    | if length == 0 then null else max_by(.component.Ir + .host.Ir) | {component: .component.Ir, host: .host.Ir} | part end;

def job($what; $size; $median; $most; $share; $floor):
    row([$what, ($size | grouped), ($median | duration), ($most | duration), ($share | percent), (times($most; $share) | duration),
         ($floor | duration)]);

def jobs($all; $count):
    order[] | select(.name | endswith("/component")) | look($all; .name; .size) as $mine | select($mine.longestJob)
    | look($all; "\($mine.row)/floor"; .size) as $floor
    | ($mine.row | sub(", as jobs"; "")) as $what
    | ($count["\($what)/component/\($mine.size)"] | part) as $usualShare
    # Where nothing grows all jobs are alike.
    | (share($mine; . > 0) // $usualShare) as $longestShare
    | if $mine.row | startswith("event") then
          job("\($what), usual"; $mine.size; $mine.usualJob; $mine.usualJobMost; $usualShare; $floor.usualJobMost),
          job("\($what), longest of all"; $mine.size; $mine.longestJob; $mine.longestJobMost; $longestShare; $floor.longestJobMost)
      elif $what == "upload, one new" then
          job("\($what), longest of all"; $mine.size; $mine.longestJob; $mine.longestJobMost; $longestShare; null)
      elif $mine.row | startswith("pull") then
          job("\($what), longest"; $mine.size; $mine.longestJob; $mine.longestJobMost; share($mine; true); null)
      else
          job("\($what), first"; $mine.size; $mine.firstJob; $mine.firstJobMost; share($mine; . == 0); null),
          job("\($what), longest other"; $mine.size; $mine.laterJob; $mine.laterJobMost; share($mine; . > 0); null)
      end;

def memory($all):
    order[] | select(.name | test("^memory.*/component$")) | look($all; .name; .size) as $mine
    | row([$mine.row, ($mine.size | grouped), (-$mine.bytes | digits(0)), (look($all; "\($mine.row)/host"; $mine.size).bytes | digits(0))]);

# ---- figures ----

# `value` at most `limit`. What depends on the machine ("time"), or is only compared ("reported"), has no further consequence.
def figure($what; $value; $limit; $unit; $kind):
    row([$what, ($value | if . == null then "not measured" else digits(2) + $unit end), "\($limit)\($unit)",
         (if $value == null then "not measured" elif $value <= $limit then "reached"
          elif $kind == "count" then "NOT reached" else "NOT reached (\($kind))" end)]);

def worst(values): [values | select(. != null)] | max;
def synchronising: test("^(pull|upload|event)") and (test("as jobs") | not);
def growth($all; $side; $from; value):
    worst($all[] | select(.size == 100000 and .side == $side and (.name | synchronising)) | . as $large
          | div($large | value; look($all; $large.name; $from) | value));
def of($all; $name; $size; $field): look($all; $name; $size)[$field];
def milliseconds: if . == null then null else . * 1000 end;
def own($all; $row): minus(of($all; "\($row)/component"; 100000; "allocations"); of($all; "\($row)/floor"; 100000; "allocations"));

def peerNames: [$peers[].peer] | unique;
def peer($name): [$peers[] | select(.peer == $name)] as $runs
    | {version: $runs[0].version, bytesPerClip: ($runs | map(.bytesPerClip) | min),
       seconds: ($runs[0].nanoseconds | keys | map(. as $key | {key: $key, value: ($runs | map(.nanoseconds[$key]) | min / 1e9)}) | from_entries)};
def fastest($what): [peerNames[] | peer(.).seconds[$what]] | min;
def comparable: [["pull, first", "initial update"], ["event, one added", "single inserts"], ["event, one updated", "single field edits"]];
def ownTime($all; $count; $row):
    $count["\($row)/component/100000"] as $ins | times(of($all; "\($row)/component"; 100000; "time"); div($ins.component; $ins.all));

def figures($all; $count):
    worst($all[] | select(.name | test("^memory.*/component$")) | -.bytes) as $memory
    | of($all; "memory, of a moment/host"; 100000; "bytes") as $hostMemory
    | def ratio($row; $size; $what; $limit):
          figure("\($what), instructions: times the floor"; div($count["\($row)/component/\($size)"].all; $count["\($row)/floor/\($size)"].all); $limit; ""; "count"),
          figure("\($what), time: times the floor"; div(of($all; "\($row)/component"; $size; "time"); of($all; "\($row)/floor"; $size; "time")); $limit; ""; "time");
      def grown($from; $text):
          figure("instructions for a clip or event at 100,000: times those at \($text), worst row";
                 growth($all; "component"; $from; $count["\(.name)/\(.size)"].all); 1.5; ""; "count"),
          figure("time for a clip or event at 100,000: times that at \($text), worst row (worst floor: \(growth($all; "floor"; $from; .time) | digits(2)))";
                 growth($all; "component"; $from; .time); 3; ""; "time");
      ratio("pull, first"; 100000; "pull of 100,000"; 2),
      grown(1000; "1,000"), grown(10000; "10,000"),
      figure("upload of 10,000 new clips: the classifying job, longest seen"; of($all; "upload, all new/component"; 10000; "firstJobMost") | milliseconds; 20; " ms"; "time"),
      figure("upload of 10,000 new clips: the longest other job seen"; of($all; "upload, all new/component"; 10000; "laterJobMost") | milliseconds; 8; " ms"; "time"),
      figure("renamed row of 10,000, instructions: times an update of 10,000";
             div($count["upload, one row renamed/component/10000"].all; $count["upload, one row updated/component/10000"].all); 1.5; ""; "count"),
      figure("renamed row of 10,000, time: times an update of 10,000";
             div(of($all; "upload, one row renamed/component"; 10000; "time"); of($all; "upload, one row updated/component"; 10000; "time")); 1.5; ""; "time"),
      ratio("presentation view, reversed"; 200; "presentation view of 200 rows reversed"; 2),
      figure("idle work: allocations"; worst($all[] | select(.name | startswith("idle")) | .allocations); 0; ""; "count"),
      figure("idle work: instructions at 100,000 times those at 1,000";
             worst($all[] | select(.size == 100000 and (.name | startswith("idle")))
                   | div($count["\(.name)/100000"].all; $count["\(.name)/1000"].all)); 1.01; ""; "count"),
      figure("idle work: time"; times(worst($all[] | select(.name | startswith("idle")) | .time); 1e9); 1000; " ns"; "time"),
      figure("memory of a moment, held by the component, worst fill"; $memory; 400; " bytes"; "count"),
      figure("the component's allocations: an event that adds a moment"; own($all; "event, one added"); 4.05; ""; "count"),
      figure("the component's allocations: an event that updates a moment"; own($all; "event, one updated"); 2.05; ""; "count"),
      figure("the component's allocations: an event that deletes a moment"; own($all; "event, one deleted"); 4.05; ""; "count"),
      figure("stripped shared object"; $library[0].strippedBytes / 1024; 1024; " KiB"; "count"),
      figure("functions that run when it is loaded"; $library[0].initialisers; 0; ""; "count"),
      (if $peers == [] then empty else
       ([peerNames[] | peer(.).bytesPerClip] | min) as $lean
       | figure("memory of a moment in the component: share of the leaner peer's"; div($memory; $lean); 0.25; ""; "count"),
         figure("the same with the host's clip: share of the leaner peer's"; div($memory + $hostMemory; $lean); 0.25; ""; "reported"),
         (comparable[] as [$row, $what]
          | figure("\($row), with the host's timeline: share of the faster peer's time";
                   div(of($all; "\($row)/component"; 100000; "time"); fastest($what)); 0.1; ""; "time"),
            figure("\($row), the component's own: share of the faster peer's time";
                   div(ownTime($all; $count; $row); fastest($what)); 0.1; ""; "time"))
       end);

def peerTable($all; $count):
    if $peers == [] then empty else
    "", "### Peers", "", "For one clip or edit; of three runs the least. The component's own part of its time is that of its instructions.", "",
    row(["", "component with the host's timeline", "the component's own"] + [peerNames[] | "\(.) \(peer(.).version)"]),
    row(["---", "---", "---"] + [peerNames[] | "---"]),
    (comparable[] as [$row, $what]
     | row([$what, (of($all; "\($row)/component"; 100000; "time") | duration), (ownTime($all; $count; $row) | duration)]
           + [peerNames[] | peer(.).seconds[$what] | duration])),
    ((of($all; "memory, of a moment/component"; 100000; "bytes") | -.) as $mine
     | row(["bytes", ($mine + of($all; "memory, of a moment/host"; 100000; "bytes") | digits(0)), ($mine | digits(0))]
           + [peerNames[] | peer(.).bytesPerClip | digits(0)]))
    end;

measured as $all | counted as $count
| "\($conditions).", "",
  "### Times, instructions, allocations", "",
  "For one clip, event, row or turn.", "",
  row(["what", "size", "time, least", "median", "floor, least", "ratio", "instructions: component", "host", "floor", "ratio", "allocations", "component's"]),
  row([range(12) | "---"]),
  rows($all; $count),
  "", "### Jobs of the main thread", "",
  row(["job", "size", "median", "longest seen", "component's share", "of the longest", "floor, longest seen"]),
  row([range(7) | "---"]),
  jobs($all; $count),
  "", "### Memory", "",
  row(["what", "moments", "bytes for one: component", "host"]), row([range(4) | "---"]),
  memory($all),
  peerTable($all; $count),
  "", "### Figures", "",
  row(["figure", "measured", "at most", ""]), row([range(4) | "---"]),
  figures($all; $count)
