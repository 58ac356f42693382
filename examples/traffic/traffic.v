// Traffic lights of two crossing roads. step moves on from phase to phase; a road stays red while the other one has
// green or amber. While hold is high the main road keeps its green. read puts the phase onto a bus that others share.
module traffic(
  input        clk,
  input        reset,
  input        step,
  input        hold,
  input        read,
  output [2:0] main, // red, amber, green
  output [2:0] side,
  output [1:0] bus
);
  localparam MAIN_GREEN = 2'd0, MAIN_AMBER = 2'd1, SIDE_GREEN = 2'd2, SIDE_AMBER = 2'd3;
  reg [1:0] phase;

  always @(posedge clk or posedge reset)
    if (reset)
      phase <= MAIN_GREEN;
    else if (step && !(hold && phase == MAIN_GREEN))
      phase <= phase + 1;

  assign main = phase == MAIN_GREEN ? 3'b001 : phase == MAIN_AMBER ? 3'b010 : 3'b100;
  assign side = phase == SIDE_GREEN ? 3'b001 : phase == SIDE_AMBER ? 3'b010 : 3'b100;
  assign bus = read ? phase : 2'bzz;
endmodule
